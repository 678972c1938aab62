// The entries of a dump, of which only those in sight are elements of the page.
import type { DumpFacts, Engine, EntryRow } from "./engine";
import { byId, make, setText } from "./dom";

const rowHeight = 26; // in pixels, as the style sheet has it
const rowsBeyond = 8; // kept above and below those in sight

export class EntryList {
   private total = 0;
   private active = 0; // where in the list, by the keys
   private facts: DumpFacts = { count: 0, otherCount: 0, changed: 0, message: "" };
   private names = { own: "", other: "" };
   private readonly list = byId("entries");
   private readonly rows = make("div", { class: "entry-rows", role: "presentation" });
   private readonly changedOnly = byId<HTMLInputElement>("changed-only");

   constructor(
      private readonly engine: Engine,
      private readonly picked: (index: number) => void,
   ) {
      this.list.append(this.rows);
      this.list.addEventListener("scroll", () => this.draw());
      this.list.addEventListener("click", (event) => {
         const row = (event.target as HTMLElement).closest<HTMLElement>("[data-entry]");
         if (row) {
            this.go(Number(row.dataset.position));
            this.pick();
         }
      });
      this.list.addEventListener("keydown", (event) => this.key(event));
      this.changedOnly.addEventListener("change", () => this.begin());
      new ResizeObserver(() => this.draw()).observe(this.list);
   }

   get count(): number {
      return this.facts.count;
   }

   // Shows what is loaded, from the beginning.
   load(facts: DumpFacts, names: { own?: string; other?: string } = {}): void {
      this.facts = facts;
      this.names = { ...this.names, ...names };
      byId("dump").hidden = facts.count === 0;
      byId("compared").hidden = facts.otherCount === 0;
      this.changedOnly.checked = facts.otherCount > 0 && facts.changed > 0;
      setText(byId("dump-facts"), `${this.names.own}: ${counted(facts.count, "entry", "entries")}`);
      setText(
         byId("other-facts"),
         facts.otherCount === 0
            ? ""
            : `${this.names.other}: ${counted(facts.otherCount, "entry", "entries")}, ` +
                 (facts.changed === 0 ? "none differ" : counted(facts.changed, "differs", "differ")),
      );
      this.begin();
   }

   private begin(): void {
      this.active = 0;
      this.list.scrollTop = 0;
      this.draw();
   }

   private draw(): void {
      if (this.facts.count === 0) {
         this.rows.replaceChildren();
         return;
      }
      const from = Math.max(0, Math.floor(this.list.scrollTop / rowHeight) - rowsBeyond);
      const count = Math.ceil(this.list.clientHeight / rowHeight) + 2 * rowsBeyond;
      const { total, rows } = this.engine.ask("entries", {
         from,
         count,
         changedOnly: this.changedOnly.checked,
      });
      this.total = total;
      this.rows.style.height = `${total * rowHeight}px`;
      this.rows.replaceChildren(...rows.map((row, i) => this.rowOf(row, from + i)));
      this.list.setAttribute("aria-activedescendant", total > 0 ? `entry-${this.active}` : "");
   }

   private rowOf(row: EntryRow, position: number): HTMLElement {
      const element = make(
         "div",
         {
            class: `entry${row.isEmpty ? " is-empty" : ""}`,
            role: "option",
            id: `entry-${position}`,
            "data-entry": String(row.index),
            "data-position": String(position),
            "aria-posinset": String(position + 1),
            "aria-setsize": String(this.total),
            "aria-selected": String(position === this.active),
            title: row.fields || row.pairText,
         },
         make("span", { class: "entry-number" }, row.label),
         make("span", { class: `entry-change is-${row.change || "same"}` }, row.change),
         make("span", { class: "entry-fields" }, row.fields || row.pairText),
         make("span", { class: "entry-image" }, row.isEmpty ? "empty" : row.image),
      );
      element.style.top = `${position * rowHeight}px`;
      return element;
   }

   private key(event: KeyboardEvent): void {
      const page = Math.max(1, Math.floor(this.list.clientHeight / rowHeight) - 1);
      const next = {
         ArrowDown: this.active + 1,
         ArrowUp: this.active - 1,
         PageDown: this.active + page,
         PageUp: this.active - page,
         Home: 0,
         End: this.total - 1,
      }[event.key];
      if (next !== undefined) {
         event.preventDefault();
         this.go(next);
      } else if (event.key === "Enter" || event.key === " ") {
         event.preventDefault();
         this.pick();
      }
   }

   // Makes the entry at this position the active one, and brings it into sight.
   private go(position: number): void {
      this.active = Math.min(Math.max(position, 0), Math.max(this.total - 1, 0));
      const top = this.active * rowHeight;
      if (top < this.list.scrollTop) {
         this.list.scrollTop = top;
      } else if (top + rowHeight > this.list.scrollTop + this.list.clientHeight) {
         this.list.scrollTop = top + rowHeight - this.list.clientHeight;
      }
      this.draw();
   }

   private pick(): void {
      const row = document.getElementById(`entry-${this.active}`);
      if (row) {
         this.picked(Number(row.dataset.entry));
      }
   }
}

function counted(count: number, one: string, many: string): string {
   return `${count.toLocaleString("en")} ${count === 1 ? one : many}`;
}
