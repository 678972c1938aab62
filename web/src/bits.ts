// The entry as words of 32 bits, each bit to be looked at and flipped.
import type { Description, View } from "./engine";
import { byId, make, setText } from "./dom";

export interface BitEvents {
   flipped(bit: number): void;
   looked(bit: number | null): void;
}

export interface BitOrderChoice {
   lowBitFirst: boolean;
   lastWordFirst: boolean;
}

const wordBits = 32;

export class BitGrid {
   private bits: HTMLElement[] = [];
   private description: Description | null = null;
   private shown = ""; // the bits of the last view
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
      this.current = 0;
      this.bits = description.bits.map((fields, bit) => {
         const narrowest = narrowestOf(description, fields);
         const tint = narrowest === null ? "is-unused" : `tint-${narrowest % 8}`;
         const isTag = fields.some((place) => description.fields[place].readOnly);
         const isShared = fields.length > 1 ? " is-shared" : "";
         return make("span", {
            class: `bit ${tint}${isTag ? " is-tag" : ""}${isShared}`,
            role: "button",
            tabindex: bit === 0 ? "0" : "-1",
            "data-bit": String(bit),
            title: titleOf(description, bit),
         });
      });
      this.turn(order);
   }

   // Puts the bits in the order that is chosen.
   turn(order: BitOrderChoice): void {
      const words: HTMLElement[] = [];
      for (let first = 0; first < this.bits.length; first += wordBits) {
         const bits = this.bits.slice(first, first + wordBits);
         const number = first / wordBits;
         words.push(
            make(
               "div",
               { class: "word", role: "group", "aria-label": `word ${number}` },
               make("span", { class: "word-number", "aria-hidden": "true" }, String(number)),
               make("div", { class: "word-bits" }, ...(order.lowBitFirst ? bits : bits.reverse())),
            ),
         );
      }
      byId("bits").replaceChildren(...(order.lastWordFirst ? words.reverse() : words));
      byId("bits").classList.toggle("low-bit-first", order.lowBitFirst);
   }

   show(view: View | null): void {
      const bits = view?.bits ?? "";
      this.bits.forEach((element, bit) => {
         const value = bits[bit] ?? "";
         if (value !== (this.shown[bit] ?? "") || element.textContent !== value) {
            setText(element, value);
            element.classList.toggle("is-set", value === "1");
            element.setAttribute("aria-label", `${this.nameOf(bit)}: ${value || "no value"}`);
         }
      });
      this.shown = bits;
   }

   light(places: readonly number[]): void {
      this.description?.bits.forEach((fields, bit) => {
         this.bits[bit].classList.toggle(
            "is-lit",
            fields.some((place) => places.includes(place)),
         );
      });
   }

   private nameOf(bit: number): string {
      const names = this.description?.bits[bit].map((place) => this.description?.fields[place].name);
      return `bit ${bit}${names?.length ? ` of ${names.join(", ")}` : ", of no field"}`;
   }

   // The arrows go as the bits lie on the page.
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
      const at = shown.indexOf(this.bits[bit]);
      const rowBits = shown.filter((one) => one.offsetTop === shown[0].offsetTop).length;
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
      this.bits[this.current].tabIndex = -1;
      this.current = bit;
      this.bits[bit].tabIndex = 0;
      this.bits[bit].focus();
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

function titleOf(description: Description, bit: number): string {
   const names = description.bits[bit].map((place) => description.fields[place].name);
   return `bit ${bit}: ${names.length > 0 ? names.join(", ") : "no field"}`;
}
