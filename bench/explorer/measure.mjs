// The time that the explorer takes in Chromium to start, for a keystroke on every pair, and for a
// large dump.
//
//    scripts/make/explorer.sh && node bench/explorer/measure.mjs [start] [keystrokes] [dump]
//
// EVERY=10 measures keystrokes on every tenth pair.
//
// Times are in milliseconds on this machine. Beside those that a page sees, which grow with
// whatever else runs here, it prints the processor time that Linux counts for the browser.
import { execFileSync } from "node:child_process";
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { loadavg, tmpdir } from "node:os";
import { join } from "node:path";
import { openBrowser, openPage, pageUrl, ready, vorn } from "../../web/tests/browser.mjs";

const frame = 16;
const parts = process.argv.slice(2);
const isAsked = (part) => parts.length === 0 || parts.includes(part);

// ---- processor time

const tick = 1000 / Number(execFileSync("getconf", ["CLK_TCK"], { encoding: "utf8" }));

// Milliseconds of processor time of all threads of a process.
function timeOf(process) {
   try {
      const [, rest] = readFileSync(`/proc/${process}/stat`, "utf8").split(/\) (?=[A-Z] )/);
      const fields = rest.split(" ");
      return (Number(fields[11]) + Number(fields[12])) * tick;
   } catch {
      return 0; // it has ended
   }
}

// The same of the process's first thread, where a renderer runs its page.
const timeOfPage = (process) =>
   Number(readFileSync(`/proc/${process}/schedstat`, "utf8").split(" ")[0]) / 1e6;

// The processes that the browser has, and when they were asked.
async function processesOf(browser) {
   const client = await browser.newBrowserCDPSession();
   const { processInfo } = await client.send("SystemInfo.getProcessInfo");
   await client.detach();
   return processInfo.map(({ id, type }) => ({ id, type, time: timeOf(id) }));
}

// What they have taken since; those that have come since then have begun with nothing.
async function timeSince(browser, before) {
   const taken = { all: 0, renderer: 0 };
   for (const { id, type, time } of await processesOf(browser)) {
      const own = time - (before.find((one) => one.id === id)?.time ?? 0);
      taken.all += own;
      taken.renderer += type === "renderer" ? own : 0;
   }
   return taken;
}

// ---- figures

const sorted = (numbers) => [...numbers].sort((left, right) => left - right);
const medianOf = (numbers) => sorted(numbers)[numbers.length >> 1];
const shown = (time) => time.toFixed(1);

// ---- start

// From the navigation on: reads the file, parses it, compiles the engine and draws the first frame.
async function measureStart(browser) {
   const starts = [];
   for (let i = 0; i < 5; ++i) {
      const context = await browser.newContext({ viewport: { width: 1400, height: 1000 } });
      const page = await context.newPage();
      const before = await processesOf(browser);
      await page.goto(pageUrl);
      await ready(page);
      const elapsed = await page.evaluate(
         () =>
            new Promise((resolve) => {
               requestAnimationFrame(() => setTimeout(() => resolve(performance.now())));
            }),
      );
      starts.push({ elapsed, ...(await timeSince(browser, before)) });
      await context.close();
   }
   const median = (key) => medianOf(starts.map((start) => start[key])).toFixed(0);
   console.log(
      `start: ${median("all")} ms of processor time in all of the browser's processes, ` +
         `${median("renderer")} in the page's; ready ${median("elapsed")} ms after the navigation`,
   );
}

// ---- keystrokes

// Types on the page as a person does: `prepare` selects what the keystroke replaces, which has a frame
// of its own. `press` returns how long the page works on the keystroke, which is what is
// done at once and the frame that shows it, and how long all lasts with the wait for the screen's turn.
function install() {
   const image = document.getElementById("image");
   const shown = () =>
      new Promise((resolve) => {
         requestAnimationFrame(() => {
            const begin = performance.now();
            const { port1, port2 } = new MessageChannel();
            port1.onmessage = () => resolve(begin); // comes after the frame is drawn
            port2.postMessage(null);
         });
      });
   window.prepare = async (kind, digits, i) => {
      image.focus();
      if (kind === "a digit") {
         image.setSelectionRange((7 * i) % digits, ((7 * i) % digits) + 1);
      } else if (kind === "all digits") {
         image.select();
      } else {
         image.setSelectionRange(digits, digits + 1);
      }
      await shown();
      await shown();
   };
   window.press = async (kind, digits, i) => {
      const begin = performance.now();
      if (kind === "a digit") {
         document.execCommand("insertText", false, "369cf258be147ad0"[i % 16]);
      } else if (kind === "all digits") {
         document.execCommand("insertText", false, (i % 2 ? "5a" : "a5").repeat(digits / 2));
      } else if (i % 2 === 0) {
         document.execCommand("insertText", false, "0");
      } else {
         document.execCommand("delete");
      }
      const done = performance.now();
      const frame = await shown();
      const end = performance.now();
      return { work: done - begin + (end - frame), wall: end - begin };
   };
}

// Opens a pair with an image, and waits until it is drawn.
async function open({ table, chip, variant, words }) {
   const arrived = new Promise((resolve) => addEventListener("popstate", resolve, { once: true }));
   location.hash = new URLSearchParams({ table, chip, variant, image: "0".repeat(8 * words) });
   await arrived;
   await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
}

async function measureKeystrokes(browser) {
   const every = Number(process.env.EVERY ?? 1); // of so many pairs one
   const pairs = vorn(["tables", "--json"])
      .trimEnd()
      .split("\n")
      .map(JSON.parse)
      .flatMap(({ name, pairs: own }) =>
         own.map(({ chip, variant, words }) => ({ table: name, chip, variant: variant ?? 0, words })),
      )
      .filter((_, i) => i % every === 0);
   const page = await openPage(browser);
   const renderers = (await processesOf(browser)).filter(({ type }) => type === "renderer");
   const client = await page.context().newCDPSession(page);
   const evaluate = async (expression) => {
      const options = { awaitPromise: true, returnByValue: true };
      return (await client.send("Runtime.evaluate", { expression, ...options })).result.value;
   };
   await page.evaluate(install);
   // One digit too many is refused and clears all values; the next keystroke takes it back.
   const results = { "a digit": [], "a digit too many": [], "all digits": [] };
   for (const pair of pairs) {
      await page.evaluate(open, pair);
      const name = `${pair.table} ${pair.chip} ${pair.variant}`;
      for (const [kind, all] of Object.entries(results)) {
         const own = { name, processor: [], work: [], wall: [] };
         for (let i = 0; i < 4; ++i) {
            const given = `(${JSON.stringify(kind)}, ${8 * pair.words}, ${i})`;
            await evaluate(`prepare${given}`);
            const before = renderers.map(({ id }) => timeOfPage(id));
            const { work, wall } = await evaluate(`press${given}`);
            own.work.push(work);
            own.wall.push(wall);
            own.processor.push(Math.max(...renderers.map(({ id }, j) => timeOfPage(id) - before[j])));
         }
         all.push(own);
      }
   }
   for (const [kind, all] of Object.entries(results)) {
      const figures = (key) => {
         const ofPairs = all.map((one) => ({ name: one.name, time: medianOf(one[key]) }));
         const times = sorted(ofPairs.map(({ time }) => time));
         const slowest = ofPairs.find(({ time }) => time === times.at(-1));
         const single = all.flatMap((one) => one[key]);
         const over = (some) => some.filter((time) => time > frame).length;
         return (
            `median ${shown(medianOf(times))}, slowest pair ${shown(times.at(-1))} (${slowest.name}), ` +
            `${over(times)} pairs over ${frame}; of ${single.length} keystrokes the slowest ` +
            `${shown(Math.max(...single))}, ${over(single)} over ${frame}`
         );
      };
      console.log(`keystroke, ${kind}, on ${all.length} pairs`);
      console.log(`   processor time of the page, with all beside it: ${figures("processor")}`);
      console.log(`   the page's work by the clock, event and frame: ${figures("work")}`);
      console.log(`   with the wait for the screen: ${figures("wall")}`);
   }
   await page.context().close();
}

// ---- dumps

async function measureDump(browser) {
   const count = 100_000;
   const image = vorn(["encode", "LifTable", "--chip", "10", "--output", "bytes", "vsi=2000"]).trim();
   const bytes = Buffer.concat(Array(count).fill(Buffer.from(image, "hex")));
   const folder = mkdtempSync(join(tmpdir(), "vorn-explorer-"));
   const files = {
      "large.bin": bytes,
      "large.txt": `${image}\n`.repeat(count),
      "large.hexdump": hexdumpOf(bytes),
   };
   for (const [name, content] of Object.entries(files)) {
      const path = join(folder, name);
      writeFileSync(path, content);
      const page = await openPage(browser, { fragment: "#table=LifTable&chip=10&variant=0" });
      const before = await processesOf(browser);
      const begin = performance.now();
      await page.setInputFiles("#dump-file", path);
      await page.waitForFunction(
         () => document.getElementById("dump-facts").textContent.includes("100,000"),
      );
      const loaded = performance.now() - begin;
      const taken = await timeSince(browser, before);
      const scrolls = await page.evaluate(async () => {
         const list = document.getElementById("entries");
         const result = [];
         for (let i = 1; i < 50; ++i) {
            const from = performance.now();
            list.scrollTop = (i / 50) * list.scrollHeight;
            await new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve)));
            result.push(performance.now() - from);
         }
         return result;
      });
      console.log(
         `dump of 100,000 images, ${name}: ${loaded.toFixed(0)} ms, ` +
            `${taken.all.toFixed(0)} of processor time; a jump in its list: ` +
            `median ${shown(medianOf(scrolls))}, slowest ${shown(Math.max(...scrolls))}`,
      );
      await page.context().close();
   }
   rmSync(folder, { recursive: true });
}

// As `hexdump -C` writes it.
function hexdumpOf(bytes) {
   const lines = [];
   for (let at = 0; at < bytes.length; at += 16) {
      const digits = bytes.toString("hex", at, at + 16).match(/../g);
      lines.push(
         `${at.toString(16).padStart(8, "0")}  ${digits.slice(0, 8).join(" ")}  ` +
            `${digits.slice(8).join(" ")}  |................|`,
      );
   }
   return `${lines.join("\n")}\n${bytes.length.toString(16).padStart(8, "0")}\n`;
}

const sayLoad = () => console.log(`load of the machine: ${loadavg().map(shown).join(", ")}`);

sayLoad();
// A frame is drawn as soon as there is something to draw: no time is spent waiting for a screen.
const browser = await openBrowser(["--disable-frame-rate-limit", "--disable-gpu-vsync"]);
if (isAsked("start")) {
   await measureStart(browser);
}
if (isAsked("keystrokes")) {
   await measureKeystrokes(browser);
}
if (isAsked("dump")) {
   await measureDump(browser);
}
await browser.close();
sayLoad();
