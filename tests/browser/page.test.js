// What the page of a stream does in a browser: of the bundled streams, and of those of $QUILLON_STREAMS.
//   QUILLON_PROGRAM   the program
//   QUILLON_PICTURES  the folder for pages and pictures, which people look at
//   QUILLON_BROWSER   Chromium

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { existsSync, mkdirSync, readdirSync, readFileSync, statSync } from "node:fs";
import { createRequire } from "node:module";
import { basename, dirname, join, resolve } from "node:path";
import { after, before, describe, it } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const root = resolve(dirname(fileURLToPath(import.meta.url)), "../..");
const program = resolve(process.env.QUILLON_PROGRAM ?? join(root, "build/release/apps/quillon/quillon"));
const folder = resolve(process.env.QUILLON_PICTURES ?? join(root, "build/browser"));
const streams = process.env.QUILLON_STREAMS ?? "";
mkdirSync(folder, { recursive: true });

const filesOf = (place, pattern) =>
  existsSync(place) ? readdirSync(place).filter((name) => pattern.test(name)).map((name) => join(place, name)) : [];
const inputs = [...filesOf(join(root, "data"), /\.ts$/), ...(streams ? filesOf(streams, /\.(ts|bin)$/) : [])];

const run = (...options) => execFileSync(program, options, { maxBuffer: 1 << 28, stdio: ["ignore", "pipe", "ignore"] });

let browser;
before(async () => {
  browser = await chromium.launch({
    executablePath: process.env.QUILLON_BROWSER ?? "/usr/bin/chromium",
    args: ["--no-sandbox"],
  });
});
after(() => browser.close());

// A page that may ask for nothing but its own file; what it says and asks for is kept.
const open = async (file, options = {}) => {
  const context = await browser.newContext({ viewport: { width: 1200, height: 900 }, ...options });
  const page = await context.newPage();
  const troubles = [];
  page.on("console", (message) => troubles.push(message.text()));
  page.on("pageerror", (error) => troubles.push(error.message));
  page.on("request", (request) => {
    if (request.url() !== pathToFileURL(file).href && !request.url().startsWith("data:")) troubles.push(request.url());
  });
  await page.goto(pathToFileURL(file).href);
  return { page, troubles, close: () => context.close() };
};

// Presses Tab from the beginning of the page to its end; gives what had the focus.
const tabThrough = async (page) => {
  await page.evaluate(() => {
    window.reached = new Set();
    document.addEventListener("focusin", (event) => window.reached.add(event.target));
  });
  for (let i = 0; i < 3000; ++i) {
    await page.keyboard.press("Tab");
    if (await page.evaluate(() => document.activeElement === document.body)) break;
  }
};

for (const input of inputs) {
  describe(basename(input), () => {
    const file = join(folder, `${basename(input)}.html`);
    let opened;
    let page;
    before(async () => {
      run("html", input, "-o", file);
      opened = await open(file);
      page = opened.page;
    });
    after(() => opened.close());

    it("is small, and all there is", async () => {
      assert.ok(statSync(file).size < 5e6);
      assert.ok((await page.title()).includes(basename(input)));
    });

    it("counts what quillon json counts", async () => {
      const tables = new Map();
      for (const line of run("json", input).toString().trim().split("\n")) {
        const { table_id } = JSON.parse(line);
        tables.set(String(table_id), (tables.get(String(table_id)) ?? 0) + 1);
      }
      const counts = await page.$$eval("#tables .counts li", (items) =>
        items.map((item) => [item.dataset.table, Number(item.dataset.sections)]));
      assert.deepEqual(new Map(counts), tables);
      const all = [...tables.values()].reduce((a, b) => a + b, 0);
      assert.equal(await page.$eval("#distinct", (e) => Number(e.textContent.replaceAll(",", ""))), all);
      assert.equal(await page.locator("#sections .section").count() > 0, true);
    });

    it("searches", async () => {
      const all = await page.locator(".section").count();
      await page.getByRole("searchbox").fill("section_length");
      await page.getByText(/of \d+ sections$/).waitFor();
      const found = await page.locator(".section:not([hidden])").count();
      assert.ok(found > 0 && found <= all);
      await page.getByRole("searchbox").fill("nothing is called so");
      await page.getByText(`0 of ${all} sections`).waitFor();
      assert.equal(await page.locator(".section:not([hidden])").count(), 0);
      await page.getByRole("searchbox").fill("");
      await page.waitForFunction(() => !document.querySelector(".section[hidden]"));
    });

    it("folds sections, and lights their bytes", async () => {
      const group = page.locator(".group").first();
      const section = group.locator(".section").first();
      await group.locator("> summary").click();
      await section.locator("> summary").click();
      const field = section.locator('.tree li:has(> b:text-is("section_length"))').first();
      await field.hover();
      const dump = await section.locator("pre").textContent();
      assert.equal(await section.locator("pre mark").textContent(), dump.slice(3, 8));
      const value = Number((await field.textContent()).match(/\d+/)[0]);
      assert.equal(parseInt(dump.slice(3, 8).replace(/\s/, ""), 16) & 0xfff, value);
      await section.locator('.tree li[tabindex="0"]').focus();
      await page.keyboard.press("ArrowDown");
      assert.notEqual(await section.locator("pre mark").textContent(), "");
      await section.locator("> summary").click();
      assert.equal(await section.locator(".tree").isVisible(), false);
      await group.locator("> summary").click();
    });

    it("zooms", async () => {
      for (const name of ["#rates-picture", "#schedule-line"]) {
        const picture = page.locator(name);
        if ((await picture.count()) === 0) continue;
        const width = () => picture.evaluate((element) => element.firstElementChild.clientWidth);
        const before = await width();
        const label = await picture.getAttribute("aria-label");
        await page.getByRole("button", { name: `Zoom in: ${label}` }).click();
        await page.getByRole("button", { name: `Zoom in: ${label}` }).click();
        assert.ok((await width()) > before * 1.5, name);
        await page.getByRole("button", { name: `Reset zoom: ${label}` }).click();
        assert.equal(await width(), before);
      }
    });

    it("shows the text of an event", async () => {
      const event = page.locator('.timeline button[tabindex="0"]');
      if ((await event.count()) === 0) return;
      await event.focus();
      await page.keyboard.press("Enter");
      const card = page.locator(".card:popover-open");
      assert.ok((await card.textContent()).includes("UTC"));
      await page.keyboard.press("Escape");
      assert.equal(await card.count(), 0);
      const buttons = await page.locator(".timeline button").count();
      await event.focus();
      await page.keyboard.press("ArrowRight");
      const moved = await page.evaluate(() => document.activeElement.matches(".timeline button"));
      assert.ok(moved || buttons === 1);
    });

    it("is reached by the keyboard alone", async () => {
      const { page, close } = await open(file);
      await tabThrough(page);
      // What is beside others in an arrow-key group is reached from the one that Tab reaches.
      const missed = await page.$$eval("a[href], button, input, summary, [tabindex]", (elements) =>
        elements
          .filter((e) => e.tabIndex >= 0 && e.checkVisibility({ checkVisibilityCSS: true }) && !window.reached.has(e))
          .map((e) => e.outerHTML.slice(0, 200)));
      assert.ok(await page.evaluate(() => window.reached.size > 5));
      assert.deepEqual(missed, []);
      await close();
    });

    it("is read without script", async () => {
      const plain = await open(file, { javaScriptEnabled: false });
      for (const name of ["Overview", "Sections"])
        assert.equal(await plain.page.getByRole("heading", { name, exact: true }).count(), 1);
      await plain.page.locator(".group > summary").first().click();
      await plain.page.locator(".section > summary").first().click();
      assert.ok(await plain.page.locator(".section .tree").first().isVisible());
      await plain.close();
    });

    for (const colorScheme of ["light", "dark"]) {
      it(`has no violation that axe knows, ${colorScheme}`, async () => {
        const checked = await open(file, { colorScheme, bypassCSP: true });
        // The first section of each table is open, and an event; many of a kind tell no more than a few.
        await checked.page.evaluate(() => {
          for (const group of document.querySelectorAll(".group")) {
            group.open = true;
            const [first, ...others] = group.querySelectorAll(".section");
            for (const other of others) other.remove();
            first.open = true;
            for (const field of [...first.querySelectorAll("li")].slice(40)) field.remove();
          }
          for (const card of [...document.querySelectorAll(".card")].slice(20)) {
            document.querySelector(`[popovertarget="${card.id}"]`).parentElement.remove();
            card.remove();
          }
          document.querySelector(".card")?.showPopover();
        });
        await checked.page.evaluate(axe);
        // Colours are all that the other scheme changes.
        const options = { resultTypes: ["violations"], ...(colorScheme === "dark" && { runOnly: ["color-contrast"] }) };
        const result = await checked.page.evaluate((o) => window.axe.run(document, o), options);
        assert.deepEqual(
          result.violations.map((v) => [v.id, v.nodes.length, v.nodes[0].html.slice(0, 300), v.nodes[0].failureSummary]),
          []);
        await checked.close();
      });

      for (const width of [400, 1200, 2000]) {
        it(`fits ${width} pixels, ${colorScheme}`, async () => {
          const wide = await open(file, { colorScheme, viewport: { width, height: 1000 } });
          assert.equal(await wide.page.evaluate(() => document.documentElement.scrollWidth), width);
          await wide.page.screenshot({
            path: join(folder, `${basename(input)}-${width}-${colorScheme}.png`),
            fullPage: true,
          });
          await wide.close();
        });
      }
    }

    it("has room for names of 10,000 letters", async () => {
      const narrow = await open(file, { viewport: { width: 400, height: 1000 } });
      const width = await narrow.page.evaluate(() => {
        for (const name of [...document.querySelectorAll("h1 bdi, dd bdi, th bdi, td bdi, .who bdi, .lines bdi")].slice(0, 60))
          name.textContent = "W".repeat(10000);
        return document.documentElement.scrollWidth;
      });
      assert.equal(width, 400);
      await narrow.close();
    });

    it("said nothing, and asked for nothing", () => {
      assert.deepEqual(opened.troubles, []);
    });
  });
}

it("is what the picture in the README shows", () => {
  const file = join(folder, "picture.html");
  execFileSync(program, ["html", "sample.ts", "-o", file], { cwd: join(root, "data") });
  const digest = createHash("sha256").update(readFileSync(file)).digest("hex");
  const kept = readFileSync(join(root, "tests/browser/picture.sha256"), "utf8").trim();
  assert.equal(digest, kept, "tests/browser/run --picture makes the picture anew");
});

it("had a stream to show", () => assert.ok(inputs.length > 0));
