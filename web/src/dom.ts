// Elements of the page, found and made.

export function byId<Type extends HTMLElement = HTMLElement>(id: string): Type {
   const element = document.getElementById(id);
   if (!element) {
      throw new Error(`no element ${id}`);
   }
   return element as Type;
}

type Child = Node | string;

// An element with attributes, and what is in it.
export function make<Tag extends keyof HTMLElementTagNameMap>(
   tag: Tag,
   attributes: Record<string, string> = {},
   ...children: Child[]
): HTMLElementTagNameMap[Tag] {
   const element = document.createElement(tag);
   for (const [name, value] of Object.entries(attributes)) {
      element.setAttribute(name, value);
   }
   element.append(...children);
   return element;
}

// A name that may be broken between its words.
export function breakable(name: string): Child[] {
   const words = name.split(/(?<=_)|(?=[A-Z][a-z])/);
   return words.flatMap((word, i) => (i === 0 ? [word] : [make("wbr"), word]));
}

// The options of a select, each a value and its text.
export function fillSelect(select: HTMLSelectElement, options: [string, string][]): void {
   select.replaceChildren(...options.map(([value, text]) => new Option(text, value)));
}

// Sets a text only where it differs: what stays needs no new layout.
export function setText(element: HTMLElement, text: string): void {
   if (element.textContent !== text) {
      element.textContent = text;
   }
}
