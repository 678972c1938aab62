// The page in Debian's browsers, and vorn itself to compare it with.
import { execFileSync, spawnSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { pathToFileURL } from "node:url";
import playwright from "playwright-core";

const root = new URL("../../", import.meta.url).pathname;
export const pagePath = process.env.VORN_EXPLORER ?? `${root}build/explorer/vorn-explorer.html`;
export const pageUrl = pathToFileURL(pagePath).href;
const program = process.env.VORN ?? `${root}build/release/tools/vorn/vorn`;

// "10,12-16" as text of each number.
function numbersIn(list) {
   return list.split(",").flatMap((part) => {
      const [first, last = first] = part.split("-").map(Number);
      return Array.from({ length: last - first + 1 }, (_, i) => String(first + i));
   });
}

// The classes with their pairs and chip types, as the tests in C++ state them once.
export const classes = [
   ...readFileSync(`${root}tests/support/Classes.def`, "utf8").matchAll(/^CLASS\( (\w+),.* (\d+), +"(.*)",/gm),
].map(([, name, pairs, chips]) => ({ name, pairs: Number(pairs), chips: numbersIn(chips) }));

// What vorn prints for these arguments.
export function vorn(args, input = "") {
   return execFileSync(program, args, {
      input,
      encoding: "utf8",
      maxBuffer: 1 << 28,
      stdio: ["pipe", "pipe", "ignore"],
   });
}

// The line with which vorn refuses them, without its own name.
export function refusalBy(args, input = "") {
   const { status, stderr } = spawnSync(program, args, { input, encoding: "utf8" });
   if (status !== 1) {
      throw new Error(`vorn ${args.join(" ")} ends with ${status}`);
   }
   return stderr.trimEnd().replace(/^vorn: /, "");
}

export async function openBrowser(options = []) {
   return playwright.chromium.launch({
      executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
      args: [
         "--headless",
         "--no-sandbox",
         "--disable-gpu",
         "--disable-quic",
         "--no-first-run",
         "--disable-background-networking",
         "--disable-component-update",
         "--disable-sync",
         ...options,
      ],
   });
}

// Debian's Firefox, which speaks WebDriver BiDi; playwright's own `firefox` takes only its own build.
export async function openFirefox() {
   return playwright._bidiFirefox.launch({
      executablePath: process.env.FIREFOX ?? "/usr/bin/firefox-esr",
   });
}

// The page as a person finds it who follows a link; `requests` are those of the page and `errors`
// what it reports, as they come.
export async function openPage(browser, { fragment = "", url = pageUrl, ...options } = {}) {
   const context = await browser.newContext({
      viewport: { width: 1400, height: 1000 },
      ...options,
   });
   const page = await context.newPage();
   page.requests = [];
   page.errors = [];
   page.on("request", (request) => page.requests.push(request.url()));
   page.on("pageerror", (error) => page.errors.push(error.message));
   await page.goto(url + fragment);
   await ready(page);
   return page;
}

export async function ready(page) {
   await page.waitForFunction(() => !document.body.classList.contains("is-loading"));
}

// The values of the fields by their names.
export function valuesOn(page) {
   return page.$$eval("#fields tr[data-field]", (rows) =>
      Object.fromEntries(rows.map((row) => [row.dataset.field, row.querySelector("input").value])),
   );
}

export const row = (page, name) => page.locator(`#fields tr[data-field="${name}"]`);
export const valueOf = (page, name) => row(page, name).locator("input");

// The digits that are drawn on the bits, from bit 0 on; each is where its bit is, or missing.
export function drawnDigits(page) {
   return page.evaluate(() => {
      const drawn = [];
      const range = document.createRange();
      for (const word of document.querySelectorAll("#bits .word")) {
         const bits = [...word.querySelectorAll("[data-bit]")].map((element) => ({
            number: Number(element.dataset.bit),
            box: element.getBoundingClientRect(),
         }));
         for (const { firstChild: text } of word.querySelectorAll(".word-digits span")) {
            for (let i = 0; i < text.length; ++i) {
               range.setStart(text, i);
               range.setEnd(text, i + 1);
               const { left, right, top, bottom } = range.getBoundingClientRect();
               const x = (3 * left + right) / 4; // the space after a digit is in its box too
               const y = (top + bottom) / 2;
               const bit = bits.find(
                  ({ box }) => box.left < x && x < box.right && box.top < y && y < box.bottom,
               );
               if (bit && text.data[i] !== " ") {
                  drawn[bit.number] = text.data[i];
               }
            }
         }
      }
      return Array.from(drawn, (digit) => digit ?? " ").join("");
   });
}

// The bits of an image, from bit 0 on.
export const bitsOf = (image) =>
   [...Buffer.from(image, "hex")]
      .map((byte) => [...byte.toString(2).padStart(8, "0")].reverse().join(""))
      .join("");
