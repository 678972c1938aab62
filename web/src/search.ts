// Finds tables, fields and addresses, and goes there.
import type { Engine, Found, Target } from "./engine";
import { byId, make } from "./dom";

export interface Destination extends Target {
   field?: string;
   place?: { entry: string; array: string; identifier: string };
}

interface Result {
   destination: Destination;
   kind: string;
   name: string;
   detail: string;
}

export class SearchBox {
   private readonly input = byId<HTMLInputElement>("search");
   private readonly list = byId("results");
   private results: Result[] = [];
   private active = 0;

   constructor(
      private readonly engine: Engine,
      private readonly go: (destination: Destination) => void,
   ) {
      this.input.addEventListener("input", () => this.find());
      this.input.addEventListener("focus", () => this.find());
      this.input.addEventListener("keydown", (event) => this.key(event));
      this.input.addEventListener("blur", () => this.close());
      this.list.addEventListener("mousedown", (event) => event.preventDefault()); // keeps the focus
      this.list.addEventListener("click", (event) => {
         const item = (event.target as HTMLElement).closest<HTMLElement>("[data-result]");
         if (item) {
            this.active = Number(item.dataset.result);
            this.take();
         }
      });
      document.addEventListener("keydown", (event) => {
         const isTyping = (event.target as HTMLElement).closest?.("input, textarea");
         if (event.key === "/" && !isTyping && !event.ctrlKey && !event.metaKey && !event.altKey) {
            event.preventDefault();
            this.input.focus();
            this.input.select();
         }
      });
   }

   private find(): void {
      const text = this.input.value.trim();
      const found = this.engine.ask("search", { text });
      this.results = this.resultsOf(found);
      this.active = 0;
      const items: HTMLElement[] = this.results.map((result, i) =>
         make(
            "li",
            { role: "option", id: `result-${i}`, "data-result": String(i) },
            make("span", { class: "result-kind" }, result.kind),
            make("span", { class: "result-name" }, result.name),
            make("small", {}, result.detail),
         ),
      );
      const note = found.message || (found.left > 0 ? `and ${found.left} more fields` : "");
      if (note !== "") {
         items.push(make("li", { class: "result-note", role: "presentation" }, note));
      }
      this.list.replaceChildren(...items);
      this.list.hidden = items.length === 0;
      this.input.setAttribute("aria-expanded", String(items.length > 0));
      this.mark();
   }

   private resultsOf(found: Found): Result[] {
      const places = found.places.map((place) => ({
         destination: {
            table: place.table,
            chip: place.chip,
            variant: place.variant,
            place: { entry: place.entry, array: place.array, identifier: place.identifier },
         },
         kind: "address",
         name: `entry ${place.entry} of ${place.table}`,
         detail:
            `${place.pairs}; array ${place.array}, identifier ${place.identifier}, ` +
            `block ${place.destBlock}${place.isUnbounded ? "; no size is stated" : ""}`,
      }));
      const named = [
         ...found.tables.map((table) => ({
            destination: table,
            kind: "table",
            name: table.table,
            detail: `chip types and variants ${table.pairs}`,
         })),
         ...found.fields.map((field) => ({
            destination: { ...field, field: field.name },
            kind: "field",
            name: `${field.name} in ${field.table}`,
            detail: `${field.hardwareName}, ${field.identifier}; ${field.pairs}`,
         })),
      ];
      // Identifiers are written in decimal, addresses usually are not.
      const isDecimal = /^\d+$/.test(this.input.value.trim());
      return isDecimal ? [...named, ...places] : [...places, ...named];
   }

   private key(event: KeyboardEvent): void {
      const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
      if (step !== undefined && this.results.length > 0) {
         event.preventDefault();
         this.active = (this.active + step + this.results.length) % this.results.length;
         this.mark();
      } else if (event.key === "Enter") {
         event.preventDefault();
         this.take();
      } else if (event.key === "Escape") {
         this.input.value = "";
         this.close();
      }
   }

   private mark(): void {
      this.list.querySelectorAll("[data-result]").forEach((item, i) => {
         item.setAttribute("aria-selected", String(i === this.active));
         if (i === this.active) {
            item.scrollIntoView({ block: "nearest" });
         }
      });
      this.input.setAttribute(
         "aria-activedescendant",
         this.results.length > 0 ? `result-${this.active}` : "",
      );
   }

   private take(): void {
      const result = this.results[this.active];
      if (result) {
         this.close();
         this.input.blur();
         this.go(result.destination);
      }
   }

   private close(): void {
      this.list.hidden = true;
      this.input.setAttribute("aria-expanded", "false");
   }
}
