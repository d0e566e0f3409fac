// The names of all pages, and those of them that hold what is typed.
const names = [/* names */];
const wanted = document.getElementById("wanted");
const found = document.getElementById("found");

function search() {
  const words = wanted.value.toLowerCase().split(/\s+/).filter(word => word);
  const fitting = words.length === 0 ? [] :
    names.filter(([name]) => words.every(word => name.toLowerCase().includes(word)));
  found.replaceChildren(...fitting.slice(0, 50).map(([name, what, page]) => {
    const item = document.createElement("li");
    const link = document.createElement("a");
    link.href = page;
    link.textContent = name;
    item.append(link, ` ${what}`);
    return item;
  }));
  if (words.length > 0 && fitting.length !== found.children.length) {
    const more = document.createElement("li");
    more.textContent = `and ${fitting.length - found.children.length} more`;
    found.append(more);
  }
  if (words.length > 0 && fitting.length === 0) found.textContent = "Nothing has that name.";
}
wanted.addEventListener("input", search);
