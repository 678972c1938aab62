// The selects of table, chip type and variant, which offer only pairs that exist.
import { byId, fillSelect } from "./dom";
import type { Catalogue, Description } from "./engine";

type Options = [string, string][];

export class PairSelects {
   private readonly table = byId<HTMLSelectElement>("table");
   private readonly chip = byId<HTMLSelectElement>("chip");
   private readonly variant = byId<HTMLSelectElement>("variant");

   constructor(
      private readonly catalogue: Catalogue,
      chosen: () => void,
   ) {
      fillSelect(
         this.table,
         catalogue.tables.map(({ name }) => [name, name]),
      );
      for (const select of [this.table, this.chip, this.variant]) {
         select.addEventListener("change", chosen);
      }
   }

   show({ table, chip, variant }: Description): void {
      fillSelect(this.chip, this.chipOptions(table));
      fillSelect(this.variant, this.variantOptions(table, chip));
      this.table.value = table;
      this.chip.value = String(chip);
      this.variant.value = String(variant);
      this.variant.disabled = this.variant.options.length < 2;
   }

   chooseVariant(variant: number): void {
      this.variant.value = String(variant);
   }

   // The pair that the selects name, or the nearest one that the table has.
   chosen(): { table: string; chip: string; variant: string } {
      const table = this.table.value;
      const keep = (wanted: string, options: Options) =>
         options.some(([value]) => value === wanted) ? wanted : options[0][0];
      const chip = keep(this.chip.value, this.chipOptions(table));
      const variant = keep(this.variant.value, this.variantOptions(table, Number(chip)));
      return { table, chip, variant };
   }

   // What a link means that leaves out the table or the chip type.
   completed(table: string, chip: string): { table: string; chip: string } {
      const named = table || this.catalogue.tables[0].name;
      return { table: named, chip: chip || String(this.pairsOf(named)[0]?.chip ?? "") };
   }

   chipOptions(table: string): Options {
      return this.pairsOf(table).map(({ chip }) => [
         String(chip),
         `${this.catalogue.chips.find(({ number }) => number === chip)?.name} (${chip})`,
      ]);
   }

   variantOptions(table: string, chip: number): Options {
      const pair = this.pairsOf(table).find((one) => one.chip === chip);
      return (pair?.variants ?? []).map((variant) => [
         String(variant),
         pair?.any ? "any" : String(variant),
      ]);
   }

   focus(): void {
      this.table.focus();
   }

   private pairsOf(table: string) {
      return this.catalogue.tables.find(({ name }) => name === table)?.pairs ?? [];
   }
}
