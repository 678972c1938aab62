// Where the entry lies on the chip's S-channel, by entry, array element and identifier.
import { byId, make, setText } from "./dom";
import { refusalOf } from "./engine";
import type { Engine } from "./engine";

export type Index = Record<"entry" | "array" | "identifier", string>;

export class Address {
   private readonly inputs = (["entry", "array", "identifier"] as const).map((key) => ({
      key,
      input: byId<HTMLInputElement>(key),
   }));
   private readonly output = byId("address");
   private hasAddress = true;

   constructor(
      private readonly engine: Engine,
      events: { typed(): void; committed(): void },
   ) {
      for (const { input } of this.inputs) {
         input.addEventListener("input", () => {
            this.show();
            events.typed();
         });
         input.addEventListener("change", () => events.committed());
      }
   }

   get index(): Index {
      const [entry, array, identifier] = this.inputs.map(({ input }) => input.value.trim());
      return { entry, array, identifier };
   }

   set index(index: Index) {
      for (const { key, input } of this.inputs) {
         input.value = index[key];
      }
   }

   // The address on the pair that is shown, which may have none.
   show(hasAddress = this.hasAddress): void {
      this.hasAddress = hasAddress;
      const refusal = refusalOf(() => {
         const { address, accessType, destBlock } = this.engine.ask("address", this.index);
         this.output.replaceChildren(
            make("strong", { class: "code" }, address),
            ` access type ${accessType}, block ${destBlock}`,
         );
      });
      if (refusal !== "") {
         setText(this.output, refusal);
      }
      this.output.classList.toggle("is-error", refusal !== "" && hasAddress);
   }

   focus(): void {
      this.inputs[0].input.focus();
   }
}
