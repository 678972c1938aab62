// The module that emscripten makes of web/engine, and its binary as esbuild hands it over.
declare module "engine" {
   interface Module {
      HEAPU8: Uint8Array;
      _explorerRoom(size: number): number;
      _explorerAnswer(question: number): number;
      _malloc(size: number): number;
      _free(place: number): void;
      lengthBytesUTF8(text: string): number;
      stringToUTF8(text: string, place: number, size: number): void;
      UTF8ToString(place: number): string;
   }
   export default function createModule(options: { wasmBinary: Uint8Array }): Promise<Module>;
}

declare module "engine.wasm" {
   const binary: Uint8Array;
   export default binary;
}
