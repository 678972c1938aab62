// The fields of the entry: a row each, whose value can be changed.
import type { Description, Field, View } from "./engine";
import { breakable, byId, fillSelect, make, setText } from "./dom";

export interface FieldEvents {
   changed(field: Field, text: string): string; // the reason where the value is refused
   committed(): void;
   takenBack(): void; // a value that was refused is gone again
   notationChosen(field: Field, notation: string): void;
   looked(field: number | null): void; // at the field of that place, or at none
}

interface Row {
   field: Field;
   element: HTMLTableRowElement;
   value: HTMLInputElement;
   notation: HTMLSelectElement;
   refusal: HTMLElement;
   isTyped: boolean; // shows what is being typed rather than the entry's value
   isRefused: boolean;
   isZero: boolean;
}

const untouched = { isTyped: false, isRefused: false, isZero: false };

// The most names that are shown beside a field that shares bits with others.
const mostShared = 3;

export class FieldList {
   private rows: Row[] = [];
   private view: View | null = null;

   constructor(private readonly events: FieldEvents) {}

   describe(description: Description, notations: readonly string[]): void {
      this.view = null;
      this.rows = description.fields.map((field, place) => this.rowOf(field, place));
      byId("field-rows").replaceChildren(...this.rows.map((row) => row.element));
      this.setNotations(notations);
   }

   // The values of the entry; without a view there are none. What stays the same isn't touched.
   show(view: View | null): void {
      this.view = view;
      this.rows.forEach((row, place) => {
         if (row.value.disabled !== (view === null)) {
            row.value.disabled = view === null;
         }
         if (!row.isTyped || row.value !== document.activeElement) {
            this.refuse(row, "");
            this.settle(row, place);
         }
      });
   }

   light(places: readonly number[]): void {
      this.rows.forEach((row, place) => {
         row.element.classList.toggle("is-lit", places.includes(place));
      });
   }

   // One for each field.
   setNotations(notations: readonly string[]): void {
      this.rows.forEach((row, place) => (row.notation.value = notations[place]));
   }

   // Goes to the value of a field.
   focus(name: string): void {
      const row = this.rows.find((one) => one.field.name === name);
      row?.value.focus({ preventScroll: true });
      row?.value.select();
      row?.element.scrollIntoView({ block: "center" });
   }

   private rowOf(field: Field, place: number): Row {
      const value = make("input", {
         type: "text",
         spellcheck: "false",
         autocomplete: "off",
         autocapitalize: "off",
         "aria-label": `value of ${field.name}`,
      });
      value.readOnly = field.readOnly;
      value.disabled = true;
      const notation = make("select", {
         class: "radix",
         "aria-label": `notation of ${field.name}`,
      });
      fillSelect(
         notation,
         field.notations.map((name) => [name, name]),
      );
      const refusal = make("p", { class: "refusal", role: "alert", hidden: "" });
      const element = make(
         "tr",
         { "data-field": field.name, class: `tint-${place % 8}${field.readOnly ? " is-tag" : ""}` },
         make("td", { class: "bits" }, field.bits, make("small", {}, widthText(field))),
         make("td", { class: "identifier" }, String(field.identifier)),
         make(
            "th",
            { scope: "row", class: "name" },
            ...breakable(field.name),
            make("small", { class: "hardware-name" }, ...breakable(field.hardwareName)),
            ...sharedNote(field),
         ),
         make("td", { class: "type" }, field.type),
         make(
            "td",
            { class: "value" },
            make("div", { class: "value-with-radix" }, value, notation),
            ...(field.readOnly ? [make("small", {}, "tag, read-only")] : []),
            refusal,
         ),
      );
      const row = { field, element, value, notation, refusal, ...untouched };
      value.addEventListener("input", () => this.typed(row));
      value.addEventListener("change", () => {
         if (!row.isRefused) {
            this.leave(row, place);
         }
      });
      value.addEventListener("blur", () => this.leave(row, place));
      value.addEventListener("keydown", (event) => this.key(event, row, place));
      notation.addEventListener("change", () => this.events.notationChosen(field, notation.value));
      element.addEventListener("pointerenter", () => {
         value.title = value.value; // which may be wider than its input
         this.events.looked(place);
      });
      element.addEventListener("pointerleave", () => this.events.looked(null));
      element.addEventListener("focusin", () => this.events.looked(place));
      element.addEventListener("focusout", () => this.events.looked(null));
      return row;
   }

   private typed(row: Row): void {
      row.isTyped = true;
      this.refuse(row, this.events.changed(row.field, row.value.value));
      if (row.isRefused) {
         row.value.setAttribute("aria-invalid", "true");
      } else {
         row.value.removeAttribute("aria-invalid");
      }
   }

   // The reason stays until something else is done.
   private refuse(row: Row, reason: string): void {
      if (row.isRefused || reason !== "") {
         row.isRefused = reason !== "";
         setText(row.refusal, reason);
         row.refusal.hidden = !row.isRefused;
      }
   }

   // Replaces what was typed with the value of the entry, written in the notation.
   private leave(row: Row, place: number): void {
      if (row.isTyped) {
         this.settle(row, place);
         this.events.committed();
      }
   }

   private settle(row: Row, place: number): void {
      if (row.isTyped) {
         row.isTyped = false;
         row.value.removeAttribute("aria-invalid");
      }
      const value = this.view?.values[place] ?? "";
      if (row.value.value !== value) {
         row.value.value = value;
      }
      const isZero = this.view?.zeros[place] ?? false;
      if (row.isZero !== isZero) {
         row.isZero = isZero;
         row.element.classList.toggle("is-zero", isZero);
      }
   }

   private key(event: KeyboardEvent, row: Row, place: number): void {
      const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
      if (step !== undefined) {
         event.preventDefault();
         const next = this.rows[place + step];
         next?.value.focus();
         next?.value.select();
      } else if (event.key === "Escape") {
         this.leave(row, place);
         if (row.isRefused) {
            this.refuse(row, "");
            this.events.takenBack();
         }
         row.value.select();
      }
   }
}

function widthText(field: Field): string {
   return field.width === 1 ? "1 bit" : `${field.width} bits`;
}

function sharedNote(field: Field): HTMLElement[] {
   if (field.shared.length === 0) {
      return [];
   }
   const shown = field.shared.slice(0, mostShared).join(", ");
   const left = field.shared.length - mostShared;
   return [
      make(
         "small",
         { class: "shared", title: field.shared.join(", ") },
         `shares bits with ${shown}${left > 0 ? ` and ${left} more` : ""}`,
      ),
   ];
}
