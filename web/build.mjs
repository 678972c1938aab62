// Puts the page together: one file of HTML with style, script and engine inside.
//
//    node build.mjs ENGINE.mjs ENGINE.wasm PAGE.html
import { createHash } from "node:crypto";
import { readFile, writeFile } from "node:fs/promises";
import { resolve } from "node:path";
import { build } from "esbuild";

const [engine, binary, page] = process.argv.slice(2).map((path) => resolve(path));
const source = (name) => new URL(`src/${name}`, import.meta.url).pathname;

const script = await build({
   entryPoints: [source("main.ts")],
   bundle: true,
   write: false,
   minify: true,
   format: "esm",
   target: "es2022",
   charset: "utf8",
   loader: { ".wasm": "binary" },
   alias: { engine, "engine.wasm": binary },
   legalComments: "none",
});
const style = await build({ entryPoints: [source("style.css")], write: false, minify: true });

// An end tag would end the element, wherever it stands.
const parts = {
   script: script.outputFiles[0].text.replaceAll("</script", "<\\/script"),
   style: style.outputFiles[0].text,
};
const hashOf = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
// What the page may do: run what stands in it, and nothing else. No request leaves it.
const policy = [
   "default-src 'none'",
   `script-src ${hashOf(parts.script)} 'wasm-unsafe-eval'`,
   `style-src ${hashOf(parts.style)}`,
   "img-src data:",
   "base-uri 'none'",
   "form-action 'none'",
].join("; ");

const html = await readFile(source("index.html"), "utf8");
await writeFile(
   page,
   html.replace(/@(policy|style|script)@/g, (_, part) => ({ ...parts, policy })[part]),
);
