// Every pair once: what the page shows is what vorn prints.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { classes, openBrowser, openPage, vorn } from "./browser.mjs";

let browser;
before(async () => (browser = await openBrowser()));
after(() => browser.close());

// Bytes that look random and are always the same.
function bytes(count, seed) {
   let state = seed;
   return Array.from({ length: count }, () => {
      state = (Math.imul(state, 1103515245) + 12345) >>> 0;
      return ((state >>> 16) & 0xff).toString(16).padStart(2, "0");
   }).join("");
}

// vorn prints small values as numbers; the page begins in hexadecimal.
const hexOf = (value) => (typeof value === "number" ? `0x${value.toString(16)}` : value);

test("all pairs show the fields and values that vorn prints", async () => {
   const tables = vorn(["tables", "--json"]).trimEnd().split("\n").map(JSON.parse);
   const pairs = tables.flatMap(({ name, pairs: own }) =>
      own.map(({ chip, variant, words }, i) => ({
         table: name,
         chip,
         variant: variant ?? 0,
         image: bytes(4 * words, 1 + i),
      })),
   );
   assert.equal(pairs.length, classes.reduce((sum, one) => sum + one.pairs, 0));
   const lines = pairs.map((pair) => JSON.stringify(pair)).join("\n");
   const decoded = vorn(["decode", "--json", "--empty", "-"], lines).trimEnd().split("\n");
   const page = await openPage(browser);
   const shown = await page.evaluate(async (all) => {
      const result = [];
      for (const { table, chip, variant, image } of all) {
         const arrived = new Promise((resolve) => addEventListener("popstate", resolve, { once: true }));
         location.hash = new URLSearchParams({ table, chip, variant, image });
         await arrived;
         const fields = [...document.querySelectorAll("#fields tr[data-field]")].map((row) => ({
            name: row.dataset.field,
            bits: row.querySelector(".bits").firstChild.textContent,
            identifier: Number(row.querySelector(".identifier").textContent),
            hardwareName: row.querySelector(".hardware-name").textContent,
            readOnly: row.querySelector("input").readOnly,
            value: row.querySelector("input").value,
         }));
         const bits = document.querySelectorAll("#bits [data-bit]");
         result.push({
            pair: ["table", "chip", "variant"].map((id) => document.getElementById(id).value),
            fields,
            unused: [...bits].filter((bit) => bit.classList.contains("is-unused")).length,
            bits: bits.length,
            ones: [...bits].filter((bit) => bit.textContent === "1").length,
         });
      }
      return result;
   }, pairs);
   pairs.forEach(({ table, chip, variant, image }, i) => {
      const name = `${table} ${chip} ${variant}`;
      const layout = JSON.parse(
         vorn(["layout", table, "--chip", chip, "--variant", String(variant), "--json"]),
      );
      const { fields: values } = JSON.parse(decoded[i]);
      const { fields, unused, bits, ones, pair } = shown[i];
      assert.deepEqual([pair[0], pair[2]], [table, String(variant)], name);
      assert.deepEqual(
         fields,
         layout.fields.map(({ name: field, offset, width, identifier, hardwareName, readOnly }) => ({
            name: field,
            bits: width === 1 ? String(offset) : `${offset}–${offset + width - 1}`,
            identifier,
            hardwareName,
            readOnly,
            value: hexOf(values[field]),
         })),
         name,
      );
      assert.equal(unused, layout.unused.reduce((sum, { width }) => sum + width, 0), name);
      assert.equal(bits, 32 * layout.words, name);
      const expected = BigInt(`0x${image}`).toString(2).replaceAll("0", "").length;
      assert.equal(ones, expected, name);
   });
   assert.deepEqual(page.errors, []);
});
