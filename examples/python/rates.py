# %% [markdown]
# # Bit rates over time
# How the bit rate of a transport stream is shared among its services, and how that changes.
# An editor that knows cells runs this file as a notebook; `python3 rates.py CAPTURE OUT.png` saves the picture.

# %%
import sys
from pathlib import Path

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt

import quillon

capture = Path(sys.argv[1] if len(sys.argv) > 1 else "data/sample.ts")
picture = Path(sys.argv[2] if len(sys.argv) > 2 else "rates.png")
interval = 0.5  # seconds

# %% [markdown]
# The capture is read in small pieces, and what was counted until then is kept now and then. When that is due the program
# association table tells: it comes often, and each section knows its time by the stream's clock.

# %%
reader = quillon.Reader(pids=[0], repeats=True)
samples = [reader.statistics]
with open(capture, "rb") as file:
    while piece := file.read(7 * 188):
        for section in reader.feed(piece):
            if section.time is not None and section.time >= samples[-1].seconds + interval:
                samples.append(reader.statistics)
reader.finish()

# %% [markdown]
# The rate between two samples is the difference of their counts. Each PID belongs to the service whose stream it is.

# %%
owners = {
    stream.pid: service.name or f"program {service.service_id}"
    for service in reader.services()
    for stream in service.streams
}
owners[0x1FFF] = "null packets"
names = sorted(set(owners.values()) - {"null packets"}) + ["tables and the rest", "null packets"]
times = [sample.seconds for sample in samples[1:]]
rates = {name: [0.0] * len(times) for name in names}
for at, (before, after) in enumerate(zip(samples, samples[1:])):
    for pid, now in after.pids.items():
        packets = now.packets - (before.pids[pid].packets if pid in before.pids else 0)
        name = owners.get(pid, "tables and the rest")
        rates[name][at] += packets * 188 * 8 / (after.seconds - before.seconds)

# %%
figure, axes = plt.subplots(figsize=(10, 5), layout="constrained")
axes.stackplot(times, *([rate / 1e3 for rate in rates[name]] for name in names), labels=names)
axes.set(title=f"Bit rates of {capture.name}", xlabel="stream time, seconds", ylabel="kbit/s")
axes.legend(loc="center left", bbox_to_anchor=(1, 0.5))
figure.savefig(picture)
for name in names:
    print(f"{name}: {sum(rates[name]) / len(times) / 1e3:.0f} kbit/s")
