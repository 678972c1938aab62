// The page in Firefox: what could differ between browsers, from one end to the other.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import {
   bitsOf,
   drawnDigits,
   openFirefox,
   openPage,
   refusalBy,
   row,
   valueOf,
   vorn,
} from "./browser.mjs";

let browser;
before(async () => (browser = await openFirefox()));
after(() => browser.close());

const lif = "#table=LifTable&chip=10&variant=0";
const encoded = (...args) =>
   vorn(["encode", "LifTable", "--chip", "10", ...args, "--output", "bytes"]).trim();

test("Firefox shows, changes and links an image, from a local file", async () => {
   const image = encoded("vsi=2000");
   const page = await openPage(browser, { fragment: `${lif}&image=${image}` });
   assert.equal(await page.title(), "LifTable on BCM88690_B0 variant 0 – Vorn explorer");
   assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");

   await valueOf(page, "vsi").fill("2001");
   assert.equal(await page.inputValue("#image"), encoded("vsi=2001"));
   await valueOf(page, "vsi").fill("?");
   assert.match(await row(page, "vsi").locator(".refusal").textContent(), /^bad value "\?" for vsi; /);
   await valueOf(page, "vsi").press("Escape");
   await page.click('[data-bit="1"]');
   assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");

   await page.fill("#image", "a00g");
   assert.equal(
      await page.textContent("#message"),
      refusalBy(["decode", "LifTable", "--chip", "10", "--variant", "0", "a00g"]),
   );
   assert.ok(await valueOf(page, "vsi").isDisabled());
   await page.fill("#image", encoded("vsi=7"));
   await page.locator("#image").blur();
   assert.equal(new URL(page.url()).hash, `${lif}&image=${encoded("vsi=7")}`);
   await page.goBack();
   assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");

   await page.setInputFiles("#dump-file", {
      name: "three.txt",
      mimeType: "text/plain",
      buffer: Buffer.from([1, 2, 3].map((vsi) => `${encoded(`vsi=${vsi}`)}\n`).join("")),
   });
   await page.locator("#entries [data-entry]").nth(2).click();
   assert.equal(await valueOf(page, "vsi").inputValue(), "0x3");

   assert.deepEqual(page.errors, []);
   const seen = page.waitForEvent("pageerror");
   await page.evaluate(() => setTimeout(() => { throw new Error("seen"); }));
   await seen;
   assert.deepEqual(page.errors, ["seen"]);
   await page.context().close();
});

test("Firefox draws a digit on each bit, at any width", async () => {
   const image = encoded("vsi=2000");
   for (const width of [360, 1400]) {
      const fragment = `${lif}&image=${image}`;
      const page = await openPage(browser, { fragment, viewport: { width, height: 900 } });
      const { scrollWidth, clientWidth } = await page.evaluate(() => {
         const { scrollWidth: all, clientWidth: seen } = document.documentElement;
         return { scrollWidth: all, clientWidth: seen };
      });
      assert.equal(scrollWidth, clientWidth);
      assert.equal(await drawnDigits(page), bitsOf(image), `${width} pixels`);
      await page.context().close();
   }
});
