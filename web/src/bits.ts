// The entry as words of 32 bits, each bit to be looked at and flipped.
import type { Description, View } from "./engine";
import { byId, make } from "./dom";

export interface BitEvents {
   flipped(bit: number): void;
   looked(bit: number | null): void;
}

export interface BitOrderChoice {
   lowBitFirst: boolean;
   lastWordFirst: boolean;
}

const wordBits = 32;

// How a digit is drawn.
const inks = ["is-set", "is-clear", "is-unused"] as const;
type Ink = (typeof inks)[number];

// The digits of a word are drawn as one text for each ink, which lies over the bits: a few long
// texts are drawn within a frame, hundreds of single digits are not. Each bit has its own digit,
// too, which is not drawn: it is the end of the bit's name.
interface Word {
   bits: number[]; // as they lie on the page
   texts: Record<Ink, Text>;
}

interface Bit {
   element: HTMLElement;
   digit: Text;
   isUnused: boolean;
}

export class BitGrid {
   private bits: Bit[] = [];
   private words: Word[] = [];
   private description: Description | null = null;
   private shown = ""; // the bits of the last view
   private lit: Bit[] = [];
   private current = 0; // the one that the tab key reaches

   constructor(private readonly events: BitEvents) {
      const grid = byId("bits");
      grid.addEventListener("click", (event) => {
         const bit = bitOf(event.target);
         if (bit !== null && this.shown !== "") {
            this.enter(bit);
            this.events.flipped(bit);
         }
      });
      grid.addEventListener("pointerover", (event) => this.events.looked(bitOf(event.target)));
      grid.addEventListener("pointerleave", () => this.events.looked(null));
      grid.addEventListener("focusin", (event) => this.events.looked(bitOf(event.target)));
      grid.addEventListener("focusout", () => this.events.looked(null));
      grid.addEventListener("keydown", (event) => this.key(event));
   }

   describe(description: Description, order: BitOrderChoice): void {
      this.description = description;
      this.shown = "";
      this.lit = [];
      this.current = 0;
      this.bits = description.bits.map((fields, number) => {
         const narrowest = narrowestOf(description, fields);
         const tint = narrowest === null ? "is-unused" : `tint-${narrowest % 8}`;
         const isTag = fields.some((place) => description.fields[place].readOnly);
         const names = fields.map((place) => description.fields[place].name).join(", ");
         const name = `bit ${number} of ${names || "no field"}`;
         const id = `bit-${number}`;
         const digit = new Text();
         const element = make(
            "span",
            {
               class: `bit ${tint}${isTag ? " is-tag" : ""}`,
               role: "button",
               tabindex: number === 0 ? "0" : "-1",
               "data-bit": String(number),
               title: name,
               id,
               "aria-label": `${name}:`,
               "aria-labelledby": `${id} ${id}-value`,
            },
            make("span", { hidden: "", id: `${id}-value` }, digit),
         );
         return { element, digit, isUnused: narrowest === null };
      });
      this.turn(order);
   }

   // Puts the bits in the order that is chosen.
   turn(order: BitOrderChoice): void {
      const numbers = [...this.bits.keys()];
      this.words = [];
      const elements: HTMLElement[] = [];
      for (let first = 0; first < numbers.length; first += wordBits) {
         const bits = numbers.slice(first, first + wordBits);
         if (!order.lowBitFirst) {
            bits.reverse();
         }
         const word = {
            bits,
            texts: { "is-set": new Text(), "is-clear": new Text(), "is-unused": new Text() },
         };
         const number = String(first / wordBits);
         const digits = inks.map((ink) => make("span", { class: ink }, word.texts[ink]));
         elements.push(
            make(
               "div",
               { class: "word", role: "group", "aria-label": `word ${number}` },
               make("span", { class: "word-number", "aria-hidden": "true" }, number),
               make("div", { class: "word-bits" }, ...bits.map((bit) => this.bits[bit].element)),
               make("div", { class: "word-digits", "aria-hidden": "true" }, ...digits),
            ),
         );
         this.write(word, this.shown);
         this.words.push(word);
      }
      byId("bits").replaceChildren(...(order.lastWordFirst ? elements.reverse() : elements));
   }

   show(view: View | null): void {
      const values = view?.bits ?? "";
      for (const word of this.words) {
         const changed = word.bits.filter((bit) => values[bit] !== this.shown[bit]);
         changed.forEach((bit) => (this.bits[bit].digit.data = values[bit] ?? ""));
         if (changed.length > 0) {
            this.write(word, values);
         }
      }
      this.shown = values;
   }

   light(places: readonly number[]): void {
      for (const { element } of this.lit) {
         element.classList.remove("is-lit");
      }
      this.lit = this.bits.filter((_, bit) =>
         this.description?.bits[bit].some((place) => places.includes(place)),
      );
      for (const { element } of this.lit) {
         element.classList.add("is-lit");
      }
   }

   private write(word: Word, values: string): void {
      const inkOf = (bit: number): Ink =>
         this.bits[bit].isUnused ? "is-unused" : values[bit] === "1" ? "is-set" : "is-clear";
      for (const ink of inks) {
         const text = word.bits.map((bit) => (inkOf(bit) === ink ? values[bit] ?? " " : " ")).join("");
         if (word.texts[ink].data !== text) {
            word.texts[ink].data = text;
         }
      }
   }

   // The arrow keys move as the bits lie on the page.
   private key(event: KeyboardEvent): void {
      const bit = bitOf(event.target);
      if (bit === null) {
         return;
      }
      if (event.key === "Enter" || event.key === " ") {
         event.preventDefault();
         if (this.shown !== "") {
            this.events.flipped(bit);
         }
         return;
      }
      const shown = [...byId("bits").querySelectorAll<HTMLElement>("[data-bit]")];
      const at = shown.indexOf(this.bits[bit].element);
      const topOf = (one: HTMLElement) => one.getBoundingClientRect().top;
      const top = topOf(shown[0]);
      const rowBits = shown.filter((one) => topOf(one) === top).length;
      const next = {
         ArrowLeft: at - 1,
         ArrowRight: at + 1,
         ArrowUp: at - rowBits,
         ArrowDown: at + rowBits,
         Home: 0,
         End: shown.length - 1,
      }[event.key];
      if (next !== undefined) {
         event.preventDefault();
         if (shown[next]) {
            this.enter(Number(shown[next].dataset.bit));
         }
      }
   }

   private enter(bit: number): void {
      this.bits[this.current].element.tabIndex = -1;
      this.current = bit;
      this.bits[bit].element.tabIndex = 0;
      this.bits[bit].element.focus();
   }
}

function bitOf(target: EventTarget | null): number | null {
   const text = target instanceof HTMLElement ? target.dataset.bit : undefined;
   return text === undefined ? null : Number(text);
}

function narrowestOf(description: Description, places: readonly number[]): number | null {
   return places.reduce<number | null>(
      (best, place) =>
         best === null || description.fields[place].width < description.fields[best].width
            ? place
            : best,
      null,
   );
}
