// What the explorer takes in Chromium: to start, for a keystroke on every pair, for a large dump.
//
//    scripts/make/explorer.sh && node bench/explorer/measure.mjs
//
// All in milliseconds of this machine; beside a keystroke stands the time of a frame at 60 Hz.
import { openBrowser, openPage, vorn } from "../../web/tests/browser.mjs";

const frame = 1000 / 60;
const browser = await openBrowser();

const starts = [];
for (let i = 0; i < 5; ++i) {
   const page = await openPage(browser);
   const client = await page.context().newCDPSession(page);
   await client.send("Performance.enable");
   const { metrics } = await client.send("Performance.getMetrics");
   starts.push(1000 * metrics.find(({ name }) => name === "TaskDuration").value);
   await page.context().close();
}
starts.sort((a, b) => a - b);
console.log(`start, processor time of the page: ${starts[2].toFixed(0)} ms (median of 5)`);

const page = await openPage(browser);
const pairs = vorn(["tables", "--json"])
   .trimEnd()
   .split("\n")
   .map(JSON.parse)
   .flatMap(({ name, pairs: own }) =>
      own.map(({ chip, variant, words }) => ({ table: name, chip, variant: variant ?? 0, words })),
   );
// From the event to the new layout, so that all the page has to work out is in it.
const times = await page.evaluate(async (all) => {
   const image = document.getElementById("image");
   const result = [];
   for (const { table, chip, variant, words } of all) {
      const arrived = new Promise((resolve) => addEventListener("popstate", resolve, { once: true }));
      location.hash = new URLSearchParams({ table, chip, variant, image: "0".repeat(8 * words) });
      await arrived;
      const own = [];
      for (let i = 0; i < 9; ++i) {
         image.value = i % 2 ? "5a".repeat(4 * words) : "a5".repeat(4 * words);
         const begin = performance.now();
         image.dispatchEvent(new Event("input"));
         document.body.getBoundingClientRect();
         own.push(performance.now() - begin);
      }
      own.sort((a, b) => a - b);
      result.push({ name: `${table} ${chip} ${variant}`, time: own[4] });
   }
   return result.sort((a, b) => a.time - b.time);
}, pairs);
const last = times.at(-1);
console.log(
   `keystroke on ${times.length} pairs: median ${times[times.length >> 1].time.toFixed(1)} ms, ` +
      `slowest ${last.time.toFixed(1)} ms (${last.name}); ` +
      `${times.filter(({ time }) => time > frame).length} take more than a frame`,
);

const image = vorn(["encode", "LifTable", "--chip", "10", "--output", "bytes", "vsi=2000"]);
const large = await page.evaluate(async (line) => {
   const transfer = new DataTransfer();
   transfer.items.add(new File([line.repeat(100_000)], "large.txt"));
   const facts = document.getElementById("dump-facts");
   const begin = performance.now();
   window.dispatchEvent(new DragEvent("drop", { dataTransfer: transfer, bubbles: true }));
   while (!facts.textContent.includes("100,000")) {
      await new Promise((resolve) => setTimeout(resolve, 1));
   }
   const loaded = performance.now() - begin;
   const list = document.getElementById("entries");
   const scrolls = [];
   for (let i = 1; i < 50; ++i) {
      const from = performance.now();
      list.scrollTop = (i / 50) * list.scrollHeight;
      list.dispatchEvent(new Event("scroll"));
      list.getBoundingClientRect();
      scrolls.push(performance.now() - from);
   }
   return { loaded, scroll: Math.max(...scrolls) };
}, image);
console.log(
   `dump of 100,000 images: ${large.loaded.toFixed(0)} ms; ` +
      `slowest of 49 jumps in its list ${large.scroll.toFixed(1)} ms`,
);
await browser.close();
