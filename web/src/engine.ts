// The library and the codec, as the module of WebAssembly that has them answers.
import createModule from "engine";
import binary from "engine.wasm";

export interface Chip {
   number: number;
   name: string;
}

export interface ChipVariants {
   chip: number;
   variants: number[];
   any: boolean;
}

export interface Table {
   name: string;
   pairs: ChipVariants[];
}

export interface Catalogue {
   chips: Chip[];
   tables: Table[];
   notations: string[];
}

export interface Field {
   name: string;
   bits: string;
   first: number;
   width: number;
   identifier: number;
   hardwareName: string;
   type: string;
   readOnly: boolean;
   lane: number;
   notations: string[];
   shared: string[];
}

// A pair, and the fields of its entries in bit order.
export interface Description {
   table: string;
   chip: number;
   variant: number;
   pairText: string;
   isTable: boolean;
   hasAddress: boolean;
   unusedBits: number;
   numbers: { name: string; text: string }[];
   fields: Field[];
   bits: number[][]; // the fields of each bit, by their place in `fields`
}

// The entry that is shown.
export interface View {
   image: string;
   message: string;
   values: string[]; // of `fields`
   zeros: boolean[]; // which of them are 0
   bits: string; // "0" or "1" for each
   variantOfTag?: number;
}

export interface Target {
   table: string;
   chip: number;
   variant: number;
}

export interface Found {
   tables: (Target & { pairs: string })[];
   fields: (Target & { name: string; hardwareName: string; identifier: number; pairs: string })[];
   places: (Target & {
      pairs: string;
      entry: string;
      array: string;
      identifier: string;
      destBlock: number;
      isUnbounded: boolean;
   })[];
   left: number;
   message: string;
}

export interface Difference {
   from: string;
   to: string;
   numbers: { name: string; from: number; to: number }[];
   fields: { name: string; change: string; from: string | null; to: string | null }[];
   unchanged: number;
   isOtherBits?: boolean;
}

export interface DumpFacts {
   count: number;
   otherCount: number;
   changed: number;
   message: string;
}

export interface EntryRow {
   index: number;
   label: string;
   pairText: string;
   image: string;
   isEmpty: boolean;
   change: string;
   fields?: string;
}

export interface Picked {
   description: Description;
   entry: string | null;
   array: string | null;
   identifier: string | null;
   other?: string;
}

// What the questions are answered with; a question's own members are its arguments.
export interface Answers {
   catalogue: Catalogue;
   open: Description;
   read:
      | { count: number; view: View }
      | { count: number; message: string; description: Description }; // of another pair
   view: View;
   set: View;
   flip: View;
   address: { address: string; accessType: number; destBlock: number };
   copy: { text: string };
   picture: { svg: string };
   comparePair: Difference;
   compareImage: Difference;
   search: Found;
   load: DumpFacts;
   loadOther: DumpFacts;
   unload: DumpFacts;
   entries: { total: number; rows: EntryRow[] };
   pick: Picked;
}

// What is wrong with the input, in the codec's own words.
export class Refusal extends Error {}

export class Engine {
   private constructor(private readonly module: Awaited<ReturnType<typeof createModule>>) {}

   static async load(): Promise<Engine> {
      return new Engine(await createModule({ wasmBinary: binary }));
   }

   // Throws a Refusal where the codec reports an error. `bytes` go with questions about texts and
   // files.
   ask<Name extends keyof Answers>(
      name: Name,
      question: object = {},
      bytes: Uint8Array | string = "",
   ): Answers[Name] {
      const given = typeof bytes === "string" ? new TextEncoder().encode(bytes) : bytes;
      const room = this.module._explorerRoom(given.length);
      this.module.HEAPU8.set(given, room);
      const text = JSON.stringify({ ask: name, ...question });
      const size = this.module.lengthBytesUTF8(text) + 1;
      const place = this.module._malloc(size);
      this.module.stringToUTF8(text, place, size);
      const answer = this.module._explorerAnswer(place);
      this.module._free(place);
      const reply = JSON.parse(this.module.UTF8ToString(answer));
      if (reply.error !== undefined) {
         throw new Refusal(reply.error);
      }
      return reply.answer;
   }
}

// Does what may be refused; returns the reason, or nothing.
export function refusalOf(action: () => void): string {
   try {
      action();
      return "";
   } catch (error) {
      return reasonOf(error);
   }
}

// The reason of a Refusal; any other error is thrown again.
export function reasonOf(error: unknown): string {
   if (error instanceof Refusal) {
      return error.message;
   }
   throw error;
}
