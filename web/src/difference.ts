// What differs between the entry's layout and another, or between its values and another image's.
import type { Difference } from "./engine";
import { make } from "./dom";

export function differenceTable(difference: Difference): HTMLElement[] {
   const { fields, numbers, unchanged } = difference;
   const same = `${unchanged} field${unchanged === 1 ? "" : "s"} the same`;
   const summary = make(
      "p",
      { class: "diff-summary" },
      fields.length === 0 && numbers.length === 0
         ? difference.isOtherBits
            ? "Only bits that belong to no field differ."
            : `No difference, ${same}.`
         : `${fields.length} field${fields.length === 1 ? " differs" : "s differ"}, ${same}.`,
   );
   const rows = [
      ...numbers.map(({ name, from, to }) => rowOf(name, "number", String(from), String(to))),
      ...fields.map(({ name, change, from, to }) => rowOf(name, change, from ?? "–", to ?? "–")),
   ];
   if (rows.length === 0) {
      return [summary];
   }
   const head = ["field", "change", difference.from, difference.to].map((text) =>
      make("th", { scope: "col" }, text),
   );
   return [
      summary,
      make(
         "div",
         { class: "scrolls" },
         make("table", {}, make("thead", {}, make("tr", {}, ...head)), make("tbody", {}, ...rows)),
      ),
   ];
}

function rowOf(name: string, change: string, from: string, to: string): HTMLTableRowElement {
   return make(
      "tr",
      { "data-diff": name, "data-change": change },
      make("th", { scope: "row" }, name),
      make("td", {}, make("span", { class: `change is-${change.split(",")[0]}` }, change)),
      make("td", { class: "code" }, from),
      make("td", { class: "code" }, to),
   );
}
