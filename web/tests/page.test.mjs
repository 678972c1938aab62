// What people do on the page, and what it says to their mistakes.
import assert from "node:assert/strict";
import { createServer } from "node:http";
import { readFile } from "node:fs/promises";
import { after, before, test } from "node:test";
import { gzipSync } from "node:zlib";
import {
   bitsOf,
   classes,
   drawnDigits,
   openBrowser,
   openPage,
   pagePath,
   ready,
   refusalBy,
   row,
   valueOf,
   valuesOn,
   vorn,
} from "./browser.mjs";

let browser;
before(async () => (browser = await openBrowser()));
after(() => browser.close());

const lif = "#table=LifTable&chip=10&variant=0";
const encoded = (...args) => vorn(["encode", ...args, "--output", "bytes"]).trim();
const lifImage = () => encoded("LifTable", "--chip", "10", "vsi=2000", "vlanEditVid1=100");
const messageOn = (page) => page.locator("#message").textContent();
const imageOn = (page) => page.inputValue("#image");

async function on(options, check) {
   const page = await openPage(browser, options);
   await check(page);
   assert.deepEqual(page.errors, []);
   await page.context().close();
}

test("an image is taken in every form that vorn decode takes", () =>
   on({ fragment: "#table=TcamActionTable&chip=10" }, async (page) => {
      const forms = [
         "4523010000000000",
         "45 23 01 00 00 00 00 00",
         "0x00012345 0x00000000",
         "00000000  45 23 01 00 00 00 00 00  |E#......|\n00000008",
         '{"image":"4523010000000000"}',
         "TcamActionTable 10 0: 4523010000000000",
      ];
      for (const form of forms) {
         await page.fill("#image", form);
         assert.equal(await messageOn(page), "", form);
         assert.equal(await valueOf(page, "action").inputValue(), "0x12345", form);
      }
      await page.fill("#image", `LifTable 10 0: ${lifImage()}`);
      assert.equal(await page.inputValue("#table"), "LifTable");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");
   }));

test("each kind of bad image is refused with vorn's own line", () =>
   on({ fragment: lif }, async (page) => {
      const pair = ["LifTable", "--chip", "10", "--variant", "0"];
      const bad = [
         "a00",
         "a00g",
         "a00f",
         "a0".repeat(81),
         "0x123456789",
         '{"image":"a0',
         '{"imgae":"a00f"}',
         "LifTabel 10 0: a00f",
         "LifTable 11 0: a00f",
         "LifTable 10 99: a00f",
         '{"table":"LifTable","chip":10,"image":17}',
      ];
      for (const text of bad) {
         await page.fill("#image", text);
         assert.equal(await messageOn(page), refusalBy(["decode", ...pair, text]), text);
         assert.equal(await page.getAttribute("#image", "aria-invalid"), "true");
         assert.equal(await valueOf(page, "vsi").inputValue(), "");
         assert.ok(await valueOf(page, "vsi").isDisabled());
      }
      const lines = `${lifImage()}\n${lifImage()}\na00f`;
      await page.fill("#image", lines);
      assert.equal(
         await messageOn(page),
         refusalBy(["decode", "LifTable", "--chip", "10", "-"], lines),
      );
      assert.equal(await page.locator("#entries [data-entry]").count(), 2);
      await page.fill("#image", lifImage());
      assert.equal(await messageOn(page), "");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");
   }));

test("a tag of another variant is a warning, which offers that variant", () =>
   on({ fragment: lif }, async (page) => {
      const image = encoded("LifTable", "--chip", "10", "--variant", "3");
      await page.fill("#image", image);
      const message = await messageOn(page);
      assert.match(message, /^warning: the image is not one of LifTable on BCM88690_B0 variant 0: /);
      assert.match(message, /, as in variant 3$/);
      await page.click("#variant-of-tag");
      assert.equal(await page.inputValue("#variant"), "3");
      assert.equal(await messageOn(page), "");
      assert.equal(await imageOn(page), image);
   }));

test("a value changes the image at once, a refused one changes nothing", () =>
   on({ fragment: `${lif}&image=${lifImage()}` }, async (page) => {
      await valueOf(page, "vsi").fill("2001");
      const changed = encoded("LifTable", "--chip", "10", "--from", lifImage(), "vsi=2001");
      assert.equal(await imageOn(page), changed);
      for (const [text, reason] of [
         ["0x8000", /^value 0x8000 of field vsi is too large; .* hold at most 0x7fff$/],
         ["20o1", /^bad value "20o1" for vsi; /],
         ["-1", /^negative value -1 for vsi; a value is 0 or more$/],
         ["", /^bad value "" for vsi; /],
      ]) {
         await valueOf(page, "vsi").fill(text);
         assert.match(await row(page, "vsi").locator(".refusal").textContent(), reason);
         assert.match(await messageOn(page), reason);
         assert.equal(await valueOf(page, "vsi").getAttribute("aria-invalid"), "true");
         assert.equal(await imageOn(page), changed);
      }
      await valueOf(page, "vsi").press("Escape");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d1");
      assert.equal(await messageOn(page), "");
      assert.ok(await row(page, "vsi").locator(".refusal").isHidden());
      // Enter leaves what is refused to be put right; elsewhere the reason stays with the old value.
      await valueOf(page, "vsi").fill("20o1");
      await valueOf(page, "vsi").press("Enter");
      assert.equal(await valueOf(page, "vsi").inputValue(), "20o1");
      await valueOf(page, "vsi").press("Tab");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d1");
      assert.equal(await valueOf(page, "vsi").getAttribute("aria-invalid"), null);
      assert.match(await row(page, "vsi").locator(".refusal").textContent(), /^bad value "20o1"/);
      assert.ok(await row(page, "vsi").locator(".refusal").isVisible());
      await page.click('[data-bit="16"]');
      assert.ok(await row(page, "vsi").locator(".refusal").isHidden());
      assert.equal(await messageOn(page), "");
      await valueOf(page, "vsi").fill("mask");
      await valueOf(page, "vsi").press("Tab");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7fff");
   }));

test("a tag is read-only, and shared bits are shown to be so", () =>
   on({ fragment: lif }, async (page) => {
      assert.equal(await valueOf(page, "resultType").getAttribute("readonly"), "");
      assert.match(await row(page, "resultType").textContent(), /tag, read-only/);
      // It alone looks so, also where an image that is refused leaves no values.
      const border = (name) =>
         valueOf(page, name).evaluate((input) => getComputedStyle(input).borderTopStyle);
      await page.fill("#image", "0");
      assert.deepEqual([await border("resultType"), await border("vsi")], ["dashed", "solid"]);
      await page.fill("#image", "");
      assert.match(await row(page, "vsi").textContent(), /shares bits with mdbEntry/);
      // A field over the tag can't change it.
      await valueOf(page, "mdbEntry").fill("0");
      assert.match(await messageOn(page), /^fields resultType and mdbEntry .* share the bits/);
   }));

test("values are written in the notation that is chosen, and it is remembered", () =>
   on({ fragment: "#table=TcamBankIpv4Tt&chip=10" }, async (page) => {
      const notation = (name) => row(page, name).locator("select.radix");
      assert.deepEqual(await notation("ipv4Dip").locator("option").allTextContents(), [
         "decimal",
         "hexadecimal",
         "binary",
         "IPv4",
      ]);
      await notation("ipv4Dip").selectOption("IPv4");
      await valueOf(page, "ipv4Dip").fill("10.0.0.1");
      await valueOf(page, "ipv4Dip").press("Tab");
      assert.equal(await valueOf(page, "ipv4Dip").inputValue(), "10.0.0.1");
      const image = encoded("TcamBankIpv4Tt", "--chip", "10", "ipv4Dip=10.0.0.1");
      assert.equal(await imageOn(page), image);
      await page.reload();
      await ready(page);
      assert.equal(await valueOf(page, "ipv4Dip").inputValue(), "10.0.0.1");
      await page.selectOption("#all-radices", "decimal");
      assert.equal(await valueOf(page, "ipv4Dip").inputValue(), "167772161");
      await notation("ipv4Dip").selectOption("binary");
      assert.equal(await valueOf(page, "ipv4Dip").inputValue(), "0b1010000000000000000000000001");
   }));

test("a bit is flipped by a click, and lights its field", () =>
   on({ fragment: lif }, async (page) => {
      await page.click('[data-bit="1"]');
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x1");
      assert.equal(await page.textContent('[data-bit="1"]'), "1");
      const named = page.getByRole("button", { name: "bit 1 of mdbEntry, vsi: 1" });
      assert.equal(await named.count(), 1);
      assert.match(await row(page, "vsi").getAttribute("class"), /is-lit/);
      await valueOf(page, "propagationProf").focus();
      await page.mouse.move(0, 0);
      await valueOf(page, "qosProfile").hover();
      const lit = await page.$$eval("#bits .is-lit", (bits) =>
         bits.map((bit) => Number(bit.dataset.bit)).sort((a, b) => a - b),
      );
      assert.deepEqual(lit, [17, 18, 19, 20, 21, 22, 23, 24]);
      const before = await imageOn(page);
      await page.click('[data-bit="639"]');
      assert.match(await messageOn(page), /^bit 639 belongs to no field of LifTable on /);
      await page.click('[data-bit="174"]');
      assert.match(await messageOn(page), /read-only/);
      assert.equal(await imageOn(page), before);
   }));

test("bits and words can be turned", () =>
   on({ fragment: lif }, async (page) => {
      const order = () =>
         page.$$eval("#bits [data-bit]", (bits) => bits.map((bit) => Number(bit.dataset.bit)));
      assert.deepEqual((await order()).slice(0, 2), [31, 30]);
      await page.selectOption("#bit-order", "true");
      assert.deepEqual((await order()).slice(0, 2), [0, 1]);
      await page.selectOption("#word-order", "true");
      assert.deepEqual((await order()).slice(0, 2), [608, 609]);
   }));

test("each bit has its digit drawn on it, however the bits are turned", async () => {
   for (const width of [360, 1400]) {
      await on({ fragment: lif, viewport: { width, height: 900 } }, async (page) => {
         await page.fill("#image", lifImage());
         const expected = bitsOf(lifImage());
         assert.equal(await drawnDigits(page), expected);
         await page.selectOption("#bit-order", "true");
         await page.selectOption("#word-order", "true");
         assert.equal(await drawnDigits(page), expected);
         await page.fill("#image", "a00g");
         assert.equal((await drawnDigits(page)).trim(), "");
      });
   }
});

test("the selects offer the pairs that exist alone", () =>
   on({ fragment: "#table=EgressPerPortTable&chip=13" }, async (page) => {
      const offered = (id) =>
         page.$$eval(`${id} option`, (options) => options.map(({ value }) => value));
      assert.deepEqual(await offered("#chip"), classes[0].chips);
      assert.equal((await offered("#table")).length, classes.length);
      await page.selectOption("#table", "LifTable");
      assert.equal(await page.inputValue("#chip"), "13");
      assert.deepEqual(await offered("#chip"), [
         ...["2", "3", "4", "5", "6", "7", "8", "10", "12", "13", "14", "15", "16", "21"],
      ].filter((chip) => vorn(["tables", "--chip", chip]).includes("LifTable")));
   }));

test("the link has what is shown, back and forward go through it", () =>
   on({ fragment: lif }, async (page) => {
      await page.fill("#image", lifImage());
      await page.locator("#image").blur();
      assert.equal(new URL(page.url()).hash, `${lif}&image=${lifImage()}`);
      await valueOf(page, "vsi").fill("7");
      await valueOf(page, "vsi").press("Tab");
      await page.fill("#entry", "4097");
      await page.locator("#entry").blur();
      assert.match(page.url(), /&entry=4097$/);
      assert.equal(await page.textContent("#address strong"), "0x1001");
      await page.goBack();
      await page.goBack();
      assert.equal(await imageOn(page), lifImage());
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");
      await page.goForward();
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7");
      await page.evaluate(() => (location.hash = "#table=LifTabel&chip=10"));
      await page.waitForFunction(() => document.getElementById("message").textContent !== "");
      assert.equal(await messageOn(page), 'unknown table "LifTabel"; did you mean LifTable?');
      // The link is that of what is shown, whatever led there.
      await page.click("[data-copy=link]");
      assert.equal(new URL(page.url()).hash, `${lif}&image=${await imageOn(page)}`);
      await page.evaluate(() => (location.hash = "#tabel=LifTable&chip=10"));
      await page.waitForFunction(() => document.getElementById("message").textContent !== "");
      assert.equal(
         await messageOn(page),
         'a link has no "tabel"; it has table, chip, variant, image, entry, array, identifier',
      );
   }));

test("layouts and images are compared", () =>
   on({ fragment: "#table=EgressPerPortTable&chip=10" }, async (page) => {
      await page.selectOption("#diff-chip", "13");
      const difference = JSON.parse(
         vorn(["layout", "EgressPerPortTable", "--diff", "10", "13", "--json"]),
      );
      assert.deepEqual(
         await page.$$eval("#diff-layout [data-diff]", (rows) =>
            rows.map(({ dataset }) => [dataset.diff, dataset.change]),
         ),
         [
            ...Object.keys(difference.numbers).map((name) => [name, "number"]),
            ...difference.fields.map(({ name, change }) => [name, change]),
         ],
      );
      assert.match(await page.textContent('#diff-layout [data-diff="vlanDomain"]'), /6–14.*6–16/);
      const other = encoded("EgressPerPortTable", "--chip", "10", "vlanDomain=5");
      await page.fill("#diff-image", other);
      assert.match(await page.textContent('#diff-values [data-diff="vlanDomain"]'), /0x00x5$/);
      await page.fill("#diff-image", "00");
      assert.equal(
         await page.textContent("#diff-message"),
         refusalBy(["decode", "EgressPerPortTable", "--chip", "10", "--variant", "0", "00"]),
      );
   }));

test("the search finds fields, tables and addresses, by the keys alone", () =>
   on({ fragment: lif }, async (page) => {
      const find = async (text) => {
         await page.keyboard.press("/");
         await page.keyboard.type(text);
      };
      await find("vlan_dom");
      assert.match(await page.textContent("#results [aria-selected=true]"), /vlanDomain in/);
      await page.keyboard.press("Enter");
      assert.equal(await page.inputValue("#table"), "EgressPerPortTable");
      assert.equal(await page.inputValue("#chip"), "10");
      assert.equal(
         await page.evaluate(() => document.activeElement.closest("tr").dataset.field),
         "vlanDomain",
      );
      await page.locator("#table").focus();
      await find("0x1001");
      await page.keyboard.press("Enter");
      assert.equal(await page.inputValue("#table"), "LifTable");
      assert.equal(await page.inputValue("#entry"), "4097");
      assert.equal(await page.textContent("#address strong"), "0x1001");
      await page.fill("#search", "364");
      assert.match(await page.textContent("#results [aria-selected=true]"), /vsi in LifTable/);
      assert.match(await page.textContent("#results"), /entry 364 of LifTable/);
      await page.fill("#search", "vlanDomian");
      assert.match(await page.textContent("#results"), /did you mean vlanDomain\?/);
      await page.keyboard.press("Escape");
      assert.ok(await page.isHidden("#results"));
      // A press may begin a scroll: only the click takes a result.
      await page.fill("#search", "vlanDomain");
      await page.hover("#results [data-result]");
      await page.mouse.down();
      assert.equal(await page.inputValue("#table"), "LifTable");
      assert.ok(await page.isVisible("#results"));
      await page.mouse.up();
      assert.equal(await page.inputValue("#table"), "EgressPerPortTable");
   }));

test("bits and fields are reached by the keys", () =>
   on({ fragment: lif }, async (page) => {
      await page.focus('[data-bit="0"]');
      await page.keyboard.press("ArrowLeft");
      await page.keyboard.press("Enter");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x1");
      await page.keyboard.press("ArrowDown");
      assert.equal(await page.evaluate(() => document.activeElement.dataset.bit), "33");
      await valueOf(page, "vsi").focus();
      await page.keyboard.press("ArrowDown");
      assert.equal(
         await page.evaluate(() => document.activeElement.closest("tr").dataset.field),
         "propagationProf",
      );
   }));

test("every control has a name", () =>
   on({ fragment: lif }, async (page) => {
      const nameless = await page.$$eval("input, select, textarea, button, [role]", (elements) =>
         elements
            .filter(
               (element) =>
                  !["presentation", "status", "alert", "search"].includes(element.role) &&
                  !element.ariaLabel &&
                  !element.getAttribute("aria-labelledby") &&
                  !element.labels?.length &&
                  !element.textContent.trim() &&
                  !element.hidden,
            )
            .map((element) => element.outerHTML),
      );
      assert.deepEqual(nameless, []);
   }));

test("what is copied composes the same image again", () =>
   on({ fragment: `${lif}&image=${lifImage()}&entry=4097` }, async (page) => {
      const copy = async (what) => {
         await page.click(`[data-copy=${what}]`);
         await page.waitForFunction(() => document.getElementById("status").textContent !== "");
         const text = await page.textContent("#status");
         await page.evaluate(() => (document.getElementById("status").textContent = ""));
         return text.replace(/^(Copied|To be copied): /, "");
      };
      assert.equal(await copy("image"), lifImage());
      assert.equal(
         await copy("words"),
         vorn(["encode", "LifTable", "--chip", "10", "--from", lifImage(), "--output", "words"]).trim(),
      );
      const [name, verb, ...args] = (await copy("command")).split(" ");
      assert.deepEqual([name, verb], ["vorn", "encode"]);
      assert.equal(vorn(["encode", ...args, "--output", "bytes"]).trim(), lifImage());
      const entry = JSON.parse(vorn(["program", "-"], `${await copy("record")}\n`));
      assert.equal(entry.image, lifImage());
      assert.equal(entry.entry, 4097);
      assert.equal(await copy("link"), page.url());
   }));

test("nothing is copied of an image that is refused", () =>
   on({ fragment: `${lif}&image=${lifImage()}` }, async (page) => {
      await page.fill("#image", "a00g");
      await page.click("[data-copy=command]");
      assert.equal(
         await page.textContent("#status"),
         `nothing is copied: ${refusalBy(["decode", "LifTable", "--chip", "10", "a00g"])}`,
      );
   }));

test("the picture is vorn's own", () =>
   on({ fragment: lif }, async (page) => {
      await page.click("#picture-details summary");
      await page.waitForSelector("#picture svg");
      const svg = vorn(["layout", "LifTable", "--chip", "10", "--svg", "-"]);
      const shown = await page.$$eval("#picture svg text", (texts) =>
         texts.map((text) => text.textContent),
      );
      assert.deepEqual(
         shown,
         [...svg.matchAll(/<text[^>]*>([^<]*)<\/text>/g)].map(([, text]) => text),
      );
   }));

// A dump of LifTable entries with vsi from 1 to `count`, and with that of entry 3 being `third`.
const dump = (count, third = 4) =>
   vorn(
      ["program", "-"],
      Array.from({ length: count }, (_, i) =>
         JSON.stringify({
            table: "LifTable",
            chip: 10,
            entry: i,
            fields: { vsi: i === 3 ? third : (i + 1) % 32768 },
         }),
      ).join("\n"),
   );

async function drop(page, name, text) {
   const data = await page.evaluateHandle(
      ([fileName, content]) => {
         const transfer = new DataTransfer();
         transfer.items.add(new File([content], fileName));
         return transfer;
      },
      [name, text],
   );
   await page.dispatchEvent("body", "drop", { dataTransfer: data });
}

test("a dump has a list to pick from, and a second one is compared with it", () =>
   on({ fragment: lif }, async (page) => {
      await drop(page, "before.jsonl", dump(3000));
      await page.waitForSelector("#dump:not([hidden])");
      assert.equal(await page.textContent("#dump-facts"), "before.jsonl: 3,000 entries");
      assert.ok((await page.locator("#entries [data-entry]").count()) < 100);
      await page.focus("#entries");
      await page.keyboard.press("End");
      await page.keyboard.press("Enter");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0xbb8");
      assert.equal(await page.inputValue("#entry"), "2999");
      await drop(page, "after.jsonl", dump(3000, 7));
      await page.waitForSelector("#compared:not([hidden])");
      assert.equal(await page.textContent("#other-facts"), "after.jsonl: 3,000 entries, 1 differs");
      const changed = page.locator("#entries [data-entry]");
      assert.equal(await changed.count(), 1);
      assert.match(await changed.textContent(), /changed.*vsi 0x4 → 0x7/);
      await changed.click();
      assert.match(await page.textContent('#diff-values [data-diff="vsi"]'), /0x40x7$/);
      await page.click("#close-dump");
      assert.ok(await page.isHidden("#dump"));
   }));

test("a compressed dump is decompressed, or refused", () =>
   on({ fragment: lif }, async (page) => {
      const open = (name, buffer) =>
         page.setInputFiles("#dump-file", { name, mimeType: "", buffer: Buffer.from(buffer) });
      const packed = gzipSync(`${lifImage()}\n${lifImage()}\n`);
      await open("two.gz", packed);
      await page.waitForSelector("#dump:not([hidden])");
      assert.equal(await page.textContent("#dump-facts"), "two.gz: 2 entries");
      assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");
      await open("cut.gz", packed.subarray(0, -9));
      await page.waitForFunction(() => document.getElementById("message").textContent !== "");
      assert.equal(
         await messageOn(page),
         "cut.gz: the gzip data is damaged, cut off or of several files in one",
      );
      assert.equal(await page.textContent("#dump-facts"), "two.gz: 2 entries");
   }));

test("a text that is dragged is left to the browser", () =>
   on({ fragment: lif }, async (page) => {
      const isTaken = (type, hasFile) =>
         page.evaluate(
            ([eventType, withFile]) => {
               const dataTransfer = new DataTransfer();
               if (withFile) {
                  dataTransfer.items.add(new File(["00"], "a.txt"));
               } else {
                  dataTransfer.items.add("00", "text/plain");
               }
               const options = { bubbles: true, cancelable: true, dataTransfer };
               return !document.body.dispatchEvent(new DragEvent(eventType, options));
            },
            [type, hasFile],
         );
      for (const type of ["dragover", "drop"]) {
         assert.equal(await isTaken(type, false), false);
         assert.equal(await isTaken(type, true), true);
      }
   }));

test("a large dump keeps only the entries in sight on the page", () =>
   on({ fragment: lif }, async (page) => {
      const count = 20_000;
      const entry = Buffer.from(encoded("LifTable", "--chip", "10"), "hex");
      const bytes = Buffer.concat(
         Array.from({ length: count }, (_, i) => {
            entry.writeUInt16LE(2 * i, 0); // vsi has the bits 1 to 15
            return Buffer.from(entry);
         }),
      );
      const line = (at) =>
         `${at.toString(16).padStart(8, "0")}: ` +
         bytes.toString("hex", at, at + 16).replace(/(....)/g, "$1 ");
      const hexdump = Array.from({ length: bytes.length / 16 }, (_, i) => line(16 * i)).join("\n");
      for (const [name, buffer] of [
         ["large.bin", bytes],
         ["large.xxd", Buffer.from(hexdump)],
      ]) {
         await page.setInputFiles("#dump-file", { name, mimeType: "", buffer });
         await page.waitForFunction(
            (facts) => document.getElementById("dump-facts").textContent === facts,
            `${name}: 20,000 entries`,
         );
         await page.evaluate(() => {
            const list = document.getElementById("entries");
            list.scrollTop = list.scrollHeight / 2;
         });
         await page.locator('[data-entry="10000"]').click();
         assert.equal(await valueOf(page, "vsi").inputValue(), "0x2710");
         assert.equal(await page.inputValue("#entry"), "10000");
         assert.ok((await page.locator("#entries [data-entry]").count()) < 100);
      }
   }));

test("a damaged dump shows its good entries and the line that is wrong", () =>
   on({ fragment: lif }, async (page) => {
      const text = `${lifImage()}\n0g\n${lifImage()}\n`;
      await page.setInputFiles("#dump-file", {
         name: "bad.txt",
         mimeType: "text/plain",
         buffer: Buffer.from(text),
      });
      await page.waitForSelector("#dump:not([hidden])");
      assert.match(await messageOn(page), /^bad\.txt:2:\d+: bad digit "g" in "0g"/);
      assert.equal(await page.locator("#entries [data-entry]").count(), 2);
      await drop(page, "nothing.txt", "");
      await page.waitForFunction(() => /no image/.test(document.getElementById("message").textContent));
   }));

test("nothing leaves the page, from a file and over HTTP", async () => {
   const server = createServer(async (_, response) => {
      response.setHeader("content-type", "text/html; charset=utf-8");
      response.end(await readFile(pagePath));
   });
   await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
   const http = `http://127.0.0.1:${server.address().port}/`;
   for (const url of [undefined, http]) {
      await on({ fragment: lif, ...(url && { url }) }, async (page) => {
         await page.fill("#image", lifImage());
         assert.equal(await valueOf(page, "vsi").inputValue(), "0x7d0");
         await page.click("#picture-details summary");
         await page.fill("#search", "vsi");
         assert.equal(page.requests.filter((one) => !one.startsWith("data:")).length, 1);
         const isRefused = await page.evaluate(async (target) => {
            const violated = new Promise((resolve) =>
               document.addEventListener("securitypolicyviolation", resolve, { once: true }),
            );
            const refused = await fetch(target).then(
               () => false,
               () => true,
            );
            return refused && (await violated).effectiveDirective;
         }, http);
         assert.equal(isRefused, "connect-src");
      });
   }
   server.close();
});

test("it is readable at 360 pixels, in light and in dark", async () => {
   for (const colorScheme of ["light", "dark"]) {
      await on(
         { fragment: `${lif}&image=${lifImage()}`, viewport: { width: 360, height: 740 }, colorScheme },
         async (page) => {
            await page.selectOption("#diff-chip", "13");
            const { width, background } = await page.evaluate(() => ({
               width: document.documentElement.scrollWidth,
               background: getComputedStyle(document.body).backgroundColor,
            }));
            assert.equal(width, 360);
            const [red] = background.match(/\d+/g).map(Number);
            assert.equal(red > 127, colorScheme === "light");
         },
      );
   }
});
