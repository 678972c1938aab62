// The page: every layout of the library, and what an image means in it.
import { Address } from "./address";
import { BitGrid } from "./bits";
import { Comparison } from "./comparison";
import { byId, fillSelect, make, setText } from "./dom";
import { Engine, reasonOf, Refusal, refusalOf } from "./engine";
import type { Answers, Description, DumpFacts, Field, View } from "./engine";
import { EntryList } from "./entries";
import { FieldList } from "./fields";
import { PairSelects } from "./pairs";
import { plainBytesOf } from "./plain";
import { SearchBox } from "./search";
import type { Destination } from "./search";
import { blankState, flawOf, fragmentOf, loadPreferences, savePreferences, stateOf } from "./state";
import type { State } from "./state";

// Longer texts are taken as dumps, because a text area shows them only slowly.
const longestText = 1 << 16;
// In a longer fragment, the digits of the image replace the text.
const longestFragment = 1 << 14;
// From a keystroke to its place in the link, in milliseconds.
const linkDelay = 100;

class Explorer {
   private readonly preferences = loadPreferences();
   private description!: Description;
   private notations: string[] = []; // of its fields
   private view: View | null = null;
   private message = ""; // on the entry, beside those on what is done to it
   private readonly fields: FieldList;
   private readonly bits: BitGrid;
   private readonly entries: EntryList;
   private readonly pairs: PairSelects;
   private readonly address: Address;
   private readonly comparison: Comparison;
   private isTextList = false; // the entries are those of the text area
   private fragment = "";
   private isTyping = false;
   private timer: ReturnType<typeof setTimeout> | undefined; // until what is typed is in the link

   private readonly image = byId<HTMLTextAreaElement>("image");

   constructor(private readonly engine: Engine) {
      const catalogue = engine.ask("catalogue");
      this.pairs = new PairSelects(catalogue, () => this.openChosen());
      this.address = new Address(engine, {
         typed: () => this.rememberSoon(),
         committed: () => this.remember(),
      });
      this.comparison = new Comparison(engine, this.pairs);
      this.fields = new FieldList({
         changed: (field, text) => this.change("set", { field: field.name, text }),
         committed: () => this.remember(),
         takenBack: () => this.showMessage(this.message),
         notationChosen: (field, notation) => this.chooseNotation(field, notation),
         looked: (place) => this.light(place === null ? [] : [place]),
      });
      this.bits = new BitGrid({
         flipped: (bit) => {
            if (this.change("flip", { bit }) === "") {
               this.remember();
            }
         },
         looked: (bit) => this.light(bit === null ? [] : this.description.bits[bit]),
      });
      this.entries = new EntryList(engine, (index) => this.pick(index));
      new SearchBox(engine, (destination) => this.go(destination));
      this.fillChoices(catalogue.notations);
      this.listen();
      this.follow(location.hash);
   }

   // ---- the pair

   private fillChoices(notations: string[]): void {
      fillSelect(byId("all-radices"), [
         ["", "as chosen"],
         ...notations.map((name): [string, string] => [name, name]),
      ]);
      byId<HTMLSelectElement>("all-radices").value = this.commonNotation();
      byId<HTMLSelectElement>("bit-order").value = String(this.preferences.lowBitFirst);
      byId<HTMLSelectElement>("word-order").value = String(this.preferences.lastWordFirst);
   }

   private describe(description: Description): void {
      this.pairs.show(description);
      if (description.pairText === this.description?.pairText) {
         return;
      }
      this.description = description;
      document.title = `${description.pairText} – Vorn explorer`;
      setText(
         byId("facts"),
         [
            description.isTable ? "table" : "register",
            ...description.numbers.map(({ name, text }) => `${name} ${text}`),
            `fields ${description.fields.length}`,
            `unused bits ${description.unusedBits}`,
         ].join(" · "),
      );
      this.chooseNotations();
      this.fields.describe(description, this.notations);
      this.bits.describe(description, this.preferences);
      byId("picture").replaceChildren();
      byId<HTMLDetailsElement>("picture-details").open = false;
      this.comparison.describe(description);
      this.address.show(description.hasAddress);
   }

   // ---- the image

   // Reads the text area.
   private read(): void {
      const { notations } = this;
      let answer: Answers["read"] | undefined;
      const refusal = refusalOf(() => {
         answer = this.engine.ask("read", { notations }, this.image.value);
      });
      if (!answer) {
         this.show(null, refusal);
         return;
      }
      if (answer.count > 1) {
         this.isTextList = true;
         this.loadEntries(this.engine.ask("entries", { from: 0, count: 0 }).total);
      } else if (this.isTextList) {
         this.isTextList = false;
         this.entries.load(this.engine.ask("unload"));
      }
      if ("view" in answer) {
         this.show(answer.view);
      } else {
         this.describe(answer.description);
         this.refresh(answer.message);
      }
   }

   private loadEntries(count: number): void {
      this.entries.load(
         { count, otherCount: 0, changed: 0, message: "" },
         { own: "the pasted images" },
      );
   }

   private refresh(message?: string): void {
      this.show(this.engine.ask("view", { notations: this.notations }), message);
   }

   // Shows the entry, or that there is none and why.
   private show(view: View | null, message = view?.message ?? ""): void {
      this.view = view;
      this.fields.show(view);
      this.bits.show(view);
      this.message = message;
      this.showMessage(message);
      setText(byId("status"), "");
      const owner = byId("variant-of-tag");
      owner.hidden = view?.variantOfTag === undefined;
      setText(owner, `Show as variant ${view?.variantOfTag}`);
      this.comparison.show(view);
   }

   private showMessage(message: string, isError = this.view === null): void {
      const element = byId("message");
      setText(element, message);
      element.classList.toggle("is-error", isError);
      this.image.setAttribute("aria-invalid", String(this.view === null));
   }

   // Does what changes the image; returns the reason where it is refused.
   private change(name: "set" | "flip", question: object): string {
      if (this.view === null) {
         return "";
      }
      let view: View | undefined;
      const refusal = refusalOf(() => {
         view = this.engine.ask(name, { ...question, notations: this.notations });
      });
      if (!view) {
         this.showMessage(refusal, true);
         return refusal;
      }
      this.isTextList = false; // the text area gets an image of its own, the entries stay
      this.show(view);
      this.image.value = view.image;
      this.rememberSoon();
      return "";
   }

   // ---- notations

   private notationOf(field: Field): string {
      const { notation, notations } = this.preferences;
      const own = notations[field.name] ?? notation;
      return field.notations.includes(own) ? own : field.notations[1];
   }

   private commonNotation(): string {
      const { notation, notations } = this.preferences;
      return Object.keys(notations).length === 0 ? notation : "";
   }

   private chooseNotation(field: Field, notation: string): void {
      this.preferences.notations[field.name] = notation;
      this.keepNotations();
   }

   private chooseNotations(): void {
      this.notations = this.description.fields.map((field) => this.notationOf(field));
   }

   private keepNotations(): void {
      savePreferences(this.preferences);
      byId<HTMLSelectElement>("all-radices").value = this.commonNotation();
      this.chooseNotations();
      this.fields.setNotations(this.notations);
      if (this.view) {
         this.refresh(this.message);
      }
   }

   // ---- what is copied

   private async copy(what: string): Promise<void> {
      this.remember();
      let text = location.href;
      const refusal = refusalOf(() => {
         if (what === "link") {
            return;
         }
         if (this.view === null) {
            throw new Refusal(`nothing is copied: ${byId("message").textContent}`);
         }
         text = this.engine.ask("copy", { what, ...this.address.index }).text;
      });
      if (refusal !== "") {
         setText(byId("status"), refusal);
         return;
      }
      const isCopied = await copied(text);
      setText(byId("status"), `${isCopied ? "Copied" : "To be copied"}: ${text}`);
   }

   // ---- entries and dumps

   private pick(index: number): void {
      const picked = this.engine.ask("pick", { index });
      const { entry, array, identifier, description } = picked;
      this.isTextList = false;
      this.address.index = {
         entry: entry ?? String(index),
         array: array ?? "",
         identifier: identifier ?? "",
      };
      this.comparison.setImage(picked.other ?? "");
      this.describe(description);
      this.address.show(description.hasAddress);
      this.refresh();
      this.image.value = this.view?.image ?? "";
      this.remember();
   }

   private async load(file: File, isOther: boolean): Promise<void> {
      try {
         this.loadBytes(file.name, await plainBytesOf(file), isOther);
      } catch (error) {
         this.showMessage(reasonOf(error), true);
      }
   }

   private loadBytes(name: string, bytes: Uint8Array | string, isOther: boolean): void {
      let facts: DumpFacts | undefined;
      const refusal = refusalOf(() => {
         facts = this.engine.ask(isOther ? "loadOther" : "load", { name }, bytes);
      });
      if (!facts) {
         this.showMessage(refusal, true);
         return;
      }
      this.entries.load(facts, isOther ? { other: name } : { own: name });
      if (!isOther) {
         this.isTextList = false;
         this.pick(0);
      }
      this.message = facts.message;
      this.showMessage(facts.message);
   }

   private unload(otherOnly: boolean): void {
      this.entries.load(this.engine.ask("unload", { otherOnly }));
   }

   // ---- the picture

   private draw(): void {
      const { svg } = this.engine.ask("picture");
      const picture = new DOMParser().parseFromString(svg, "image/svg+xml").documentElement;
      byId("picture").replaceChildren(document.importNode(picture, true));
   }

   private savePicture(): void {
      const { svg } = this.engine.ask("picture");
      const place = URL.createObjectURL(new Blob([svg], { type: "image/svg+xml" }));
      const { table, chip, variant } = this.description;
      make("a", { href: place, download: `${table}-${chip}-${variant}.svg` }).click();
      URL.revokeObjectURL(place);
   }

   // ---- links

   private state(): State {
      const { table, chip, variant } = this.description;
      const image = this.image.value.trim();
      return {
         ...blankState,
         table,
         chip: String(chip),
         variant: String(variant),
         image: image === "" ? "" : this.view && !this.isTextList ? this.view.image : image,
         ...this.address.index,
      };
   }

   // Puts what is typed into the link a moment later: changing the link takes a browser longer than
   // showing the text, and browsers refuse more than some hundred changes within seconds.
   private rememberSoon(): void {
      this.timer ??= setTimeout(() => this.remember(true), linkDelay);
   }

   // Puts what is shown into the link. Continuous typing is one step in the browser's history.
   private remember(isTyping = false): void {
      clearTimeout(this.timer);
      this.timer = undefined;
      let fragment = fragmentOf(this.state());
      if (fragment.length > longestFragment) {
         fragment = fragmentOf({ ...this.state(), image: this.view?.image ?? "" });
      }
      if (fragment !== this.fragment) {
         if (this.isTyping) {
            history.replaceState(null, "", fragment);
         } else {
            history.pushState(null, "", fragment);
         }
      }
      this.fragment = fragment;
      this.isTyping = isTyping;
   }

   private follow(fragment: string): void {
      this.apply(stateOf(fragment));
      const flaw = flawOf(fragment);
      if (flaw !== "" && byId("message").textContent === "") {
         this.showMessage(flaw, true);
      }
   }

   private apply(state: State): void {
      const pair = {
         ...this.pairs.completed(state.table, state.chip),
         variant: state.variant,
      };
      let description: Description | undefined;
      const refusal = refusalOf(() => {
         description = this.engine.ask("open", pair);
      });
      if (!description) {
         if (!this.description) {
            this.apply(blankState);
         }
         this.fragment = location.hash;
         this.showMessage(refusal, true);
         return;
      }
      const { entry, array, identifier, image } = state;
      this.address.index = { entry, array, identifier };
      this.image.value = image;
      this.describe(description);
      this.address.show(description.hasAddress);
      this.read();
      clearTimeout(this.timer);
      this.timer = undefined;
      this.fragment = location.hash;
      this.isTyping = false;
   }

   private go(destination: Destination): void {
      const { table, chip, variant } = this.description;
      const isSame =
         destination.table === table &&
         destination.chip === chip &&
         destination.variant === variant;
      if (!isSame || destination.place) {
         this.apply({
            ...blankState,
            table: destination.table,
            chip: String(destination.chip),
            variant: String(destination.variant),
            image: isSame ? this.image.value : "",
            ...destination.place,
         });
         this.remember();
      }
      if (destination.field) {
         this.fields.focus(destination.field);
      } else {
         (destination.place ? this.address : this.pairs).focus();
      }
   }

   private openChosen(): void {
      // Text that names its pair would lead back to that pair: only the image's digits stay.
      if (this.view && !this.isTextList && this.image.value.trim() !== "") {
         this.image.value = this.view.image;
      }
      this.describe(this.engine.ask("open", this.pairs.chosen()));
      this.read();
      this.remember();
   }

   private light(places: readonly number[]): void {
      this.fields.light(places);
      this.bits.light(places);
   }

   // ---- what the page does

   private listen(): void {
      byId("variant-of-tag").addEventListener("click", () => {
         this.pairs.chooseVariant(this.view?.variantOfTag ?? 0);
         this.openChosen();
      });
      this.image.addEventListener("input", () => {
         this.read();
         this.rememberSoon();
      });
      this.image.addEventListener("change", () => this.remember());
      this.image.addEventListener("paste", (event) => {
         const text = event.clipboardData?.getData("text/plain") ?? "";
         if (text.length > longestText) {
            event.preventDefault();
            this.loadBytes("clipboard", text, false);
         }
      });
      byId("fresh").addEventListener("click", () => {
         this.image.value = "";
         this.read();
         this.remember();
         this.image.focus();
      });
      document.querySelectorAll<HTMLElement>("[data-copy]").forEach((button) => {
         button.addEventListener("click", () => void this.copy(button.dataset.copy ?? ""));
      });
      this.listenToDumps();
      byId<HTMLSelectElement>("all-radices").addEventListener("change", (event) => {
         const chosen = (event.target as HTMLSelectElement).value;
         if (chosen !== "") {
            this.preferences.notation = chosen;
            this.preferences.notations = {};
         }
         this.keepNotations();
      });
      for (const [id, key] of [
         ["bit-order", "lowBitFirst"],
         ["word-order", "lastWordFirst"],
      ] as const) {
         byId<HTMLSelectElement>(id).addEventListener("change", (event) => {
            this.preferences[key] = (event.target as HTMLSelectElement).value === "true";
            savePreferences(this.preferences);
            this.bits.turn(this.preferences);
         });
      }
      byId("picture-details").addEventListener("toggle", () => this.draw());
      byId("save-picture").addEventListener("click", () => this.savePicture());
      window.addEventListener("popstate", () => this.follow(location.hash));
   }

   private listenToDumps(): void {
      for (const [button, chooser, isOther] of [
         ["open-dump", "dump-file", false],
         ["open-other", "other-file", true],
      ] as const) {
         const input = byId<HTMLInputElement>(chooser);
         byId(button).addEventListener("click", () => input.click());
         input.addEventListener("change", () => {
            const file = input.files?.[0];
            if (file) {
               void this.load(file, isOther).finally(() => (input.value = ""));
            }
         });
      }
      byId("close-dump").addEventListener("click", () => this.unload(false));
      byId("close-other").addEventListener("click", () => this.unload(true));
      // A text that is dragged goes where it is dropped.
      const hasFile = ({ dataTransfer }: DragEvent) => dataTransfer?.types.includes("Files");
      window.addEventListener("dragover", (event) => {
         if (hasFile(event)) {
            event.preventDefault();
            document.body.classList.add("is-dropping");
         }
      });
      window.addEventListener("dragleave", () => document.body.classList.remove("is-dropping"));
      window.addEventListener("drop", (event) => {
         document.body.classList.remove("is-dropping");
         if (hasFile(event)) {
            event.preventDefault();
         }
         const file = event.dataTransfer?.files[0];
         if (file) {
            void this.load(file, this.entries.count > 0);
         }
      });
   }
}

async function copied(text: string): Promise<boolean> {
   try {
      await navigator.clipboard.writeText(text);
      return true;
   } catch {
      return false; // what is to be copied then stands on the page
   }
}

async function start(): Promise<void> {
   try {
      new Explorer(await Engine.load());
      document.body.classList.remove("is-loading");
   } catch (error) {
      setText(byId("message"), `The explorer can't start here: ${error}`);
      throw error;
   }
}

void start();
