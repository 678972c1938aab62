// Compares the layout with that of another pair, and the entry's values with another image's.
import { differenceTable } from "./difference";
import { byId, fillSelect, setText } from "./dom";
import { refusalOf } from "./engine";
import type { Description, Engine, View } from "./engine";
import type { PairSelects } from "./pairs";

export class Comparison {
   private readonly chip = byId<HTMLSelectElement>("diff-chip");
   private readonly variant = byId<HTMLSelectElement>("diff-variant");
   private readonly image = byId<HTMLTextAreaElement>("diff-image");
   private description!: Description;
   private hasEntry = false;

   constructor(
      private readonly engine: Engine,
      private readonly pairs: PairSelects,
   ) {
      this.chip.addEventListener("change", () => {
         this.fillVariants();
         this.compareLayouts();
      });
      this.variant.addEventListener("change", () => this.compareLayouts());
      this.image.addEventListener("input", () => this.compareValues());
   }

   describe(description: Description): void {
      this.description = description;
      const wanted = this.chip.value;
      fillSelect(this.chip, [["", "nothing"], ...this.pairs.chipOptions(description.table)]);
      this.chip.value = wanted;
      if (this.chip.selectedIndex < 0) {
         this.chip.value = "";
      }
      this.fillVariants();
      this.compareLayouts();
   }

   show(view: View | null): void {
      this.hasEntry = view !== null;
      this.compareValues();
   }

   // The image to compare with, or none.
   setImage(image: string): void {
      this.image.value = image;
   }

   private fillVariants(): void {
      const wanted = this.variant.value || String(this.description.variant);
      const chip = this.chip.value;
      const options =
         chip === "" ? [] : this.pairs.variantOptions(this.description.table, Number(chip));
      fillSelect(this.variant, options);
      this.variant.value = options.some(([value]) => value === wanted)
         ? wanted
         : options[0]?.[0] ?? "";
      this.variant.disabled = options.length < 2;
   }

   private compareLayouts(): void {
      const chip = this.chip.value;
      const variant = this.variant.value;
      byId("diff-layout").replaceChildren(
         ...(chip === ""
            ? []
            : differenceTable(this.engine.ask("comparePair", { chip, variant }))),
      );
   }

   private compareValues(): void {
      const text = this.image.value;
      let shown: HTMLElement[] = [];
      const refusal = refusalOf(() => {
         if (this.hasEntry && text.trim() !== "") {
            shown = differenceTable(this.engine.ask("compareImage", {}, text));
         }
      });
      byId("diff-values").replaceChildren(...shown);
      setText(byId("diff-message"), refusal);
   }
}
