// Draws the picture of the explorer's document: node web/tests/screenshot.mjs docs/explorer.png
import { openBrowser, openPage, row, vorn } from "./browser.mjs";

const [place] = process.argv.slice(2);
const fields = ["vsi=2000", "vlanEditVid1=100"];
const image = vorn(["encode", "LifTable", "--chip", "10", "--output", "bytes", ...fields]).trim();
const browser = await openBrowser();
const page = await openPage(browser, {
   fragment: `#table=LifTable&chip=10&variant=0&image=${image}`,
   viewport: { width: 1280, height: 860 },
});
await row(page, "vsi").hover();
await page.screenshot({ path: place });
await browser.close();
