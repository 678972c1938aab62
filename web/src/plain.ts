// The bytes of a file, decompressed by the browser as vorn would.
import { Refusal } from "./engine";

const formats = [
   { name: "gzip", begin: [0x1f, 0x8b, 0x08] },
   { name: "zstd", begin: [0x28, 0xb5, 0x2f, 0xfd] },
];

// Throws a Refusal if they can't be decompressed.
export async function plainBytesOf(file: File): Promise<Uint8Array> {
   const begin = new Uint8Array(await file.slice(0, 4).arrayBuffer());
   const format = formats.find((one) => one.begin.every((byte, i) => begin[i] === byte))?.name;
   if (format === undefined) {
      return new Uint8Array(await file.arrayBuffer());
   }
   let decompression: DecompressionStream;
   try {
      decompression = new DecompressionStream(format as CompressionFormat);
   } catch {
      throw new Refusal(
         `${file.name}: is compressed with ${format}, which this browser can't read; ` +
            "decompress it first",
      );
   }
   try {
      const plain = file.stream().pipeThrough(decompression);
      return new Uint8Array(await new Response(plain).arrayBuffer());
   } catch {
      throw new Refusal(
         `${file.name}: the ${format} data is damaged, cut off or of several files in one`,
      );
   }
}
