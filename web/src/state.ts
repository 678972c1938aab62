// What a link carries, and what this browser remembers.

// The fragment of a link: which pair, the image, and which entry of the memory.
export interface State {
   table: string;
   chip: string;
   variant: string;
   image: string;
   entry: string;
   array: string;
   identifier: string;
}

export const blankState: State = {
   table: "",
   chip: "",
   variant: "",
   image: "",
   entry: "",
   array: "",
   identifier: "",
};

const keys = Object.keys(blankState) as (keyof State)[];

const givenIn = (fragment: string) => new URLSearchParams(fragment.replace(/^#/, ""));

export function stateOf(fragment: string): State {
   const given = givenIn(fragment);
   const state = { ...blankState };
   for (const key of keys) {
      state[key] = given.get(key) ?? "";
   }
   return state;
}

// What is wrong with a fragment whatever the pair, or nothing.
export function flawOf(fragment: string): string {
   const unknown = [...givenIn(fragment).keys()].find((key) => !keys.some((own) => own === key));
   return unknown === undefined
      ? ""
      : `a link has no "${unknown}"; it has ${keys.join(", ")}`;
}

export function fragmentOf(state: State): string {
   const given = new URLSearchParams();
   for (const key of keys) {
      if (state[key] !== "") {
         given.set(key, state[key]);
      }
   }
   return `#${given}`;
}

export interface Preferences {
   notation: string; // of fields without their own
   notations: Record<string, string>; // by the field's name
   lowBitFirst: boolean;
   lastWordFirst: boolean;
}

const place = "vorn-explorer";

export function loadPreferences(): Preferences {
   const preferences: Preferences = {
      notation: "hexadecimal",
      notations: {},
      lowBitFirst: false,
      lastWordFirst: false,
   };
   try {
      Object.assign(preferences, JSON.parse(localStorage.getItem(place) ?? "{}"));
   } catch {
      // A browser may store nothing for local files: the choice then lasts as long as the page.
   }
   return preferences;
}

export function savePreferences(preferences: Preferences): void {
   try {
      localStorage.setItem(place, JSON.stringify(preferences));
   } catch {
      // As above.
   }
}
