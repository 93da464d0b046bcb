// Makes docs/page.webp, the picture of the page of the bundled stream, and keeps that page's digest, by which the tests
// know that the picture is of the page that is made now.

import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const root = resolve(dirname(fileURLToPath(import.meta.url)), "../..");
const program = resolve(process.env.QUILLON_PROGRAM ?? join(root, "build/release/apps/quillon/quillon"));
const folder = resolve(process.env.QUILLON_PICTURES ?? join(root, "build/browser"));
mkdirSync(folder, { recursive: true });
const file = join(folder, "picture.html");
// By its short name, which the page bears.
execFileSync(program, ["html", "sample.ts", "-o", file], { cwd: join(root, "data") });

const browser = await chromium.launch({
  executablePath: process.env.QUILLON_BROWSER ?? "/usr/bin/chromium",
  args: ["--no-sandbox"],
});
const page = await browser.newPage({ viewport: { width: 1280, height: 1000 }, bypassCSP: true });
await page.goto(pathToFileURL(file).href);
// What people look at first: all but the tables of figures.
await page.addStyleTag({
  content: "#pids, #services, #networks ~ section, #networks { display: none }" +
    ".rates > div:last-child, .shares > div:last-child { display: none }" +
    ".rates, .shares { display: block } .picture > svg { height: 14rem } .treemap { height: 19rem }",
});
const height = await page.evaluate(() => document.querySelector("#schedule").getBoundingClientRect().bottom + 16);
await page.setViewportSize({ width: 1280, height: Math.ceil(height) });
const shot = await page.screenshot();
const picture = await page.evaluate(async (data) => {
  const image = new Image();
  image.src = `data:image/png;base64,${data}`;
  await image.decode();
  const canvas = document.createElement("canvas");
  canvas.width = image.width;
  canvas.height = image.height;
  canvas.getContext("2d").drawImage(image, 0, 0);
  return canvas.toDataURL("image/webp", 0.6).split(",")[1];
}, shot.toString("base64"));
writeFileSync(join(folder, "page.png"), shot);
writeFileSync(join(root, "docs/page.webp"), Buffer.from(picture, "base64"));
writeFileSync(join(root, "tests/browser/picture.sha256"), createHash("sha256").update(readFileSync(file)).digest("hex") + "\n");
await browser.close();
