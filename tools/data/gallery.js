"use strict";

const filters = [...document.querySelectorAll("[data-filter]")];
const sections = [...document.querySelectorAll("section")];
const enlarged = document.getElementById("enlarged");

// A section is filtered by its own attributes, the pictures within it by their language.
function apply() {
    const chosen = Object.fromEntries(filters.map((filter) => [filter.dataset.filter, filter.value]));
    const matches = (element, name) => !chosen[name] || element.dataset[name] === chosen[name];
    let count = 0;
    for (const section of sections) {
        section.hidden = !["pad", "orientation", "direction", "look"].every((name) => matches(section, name));
        for (const figure of section.querySelectorAll("figure")) {
            figure.hidden = !matches(figure, "language");
            count += section.hidden || figure.hidden ? 0 : 1;
        }
    }
    document.getElementById("count").textContent = `${count} pictures`;
    history.replaceState(null, "", "#" + new URLSearchParams(Object.entries(chosen).filter(([, value]) => value)));
}

function restore() {
    const chosen = new URLSearchParams(location.hash.slice(1));
    for (const filter of filters) {
        filter.value = chosen.get(filter.dataset.filter) ?? "";
    }
    apply();
}

document.getElementById("filters").addEventListener("change", apply);
document.getElementById("filters").addEventListener("reset", () => setTimeout(apply));
document.querySelector("main").addEventListener("click", (event) => {
    const link = event.target.closest("a");
    if (!link) {
        return;
    }
    event.preventDefault();
    const picture = link.querySelector("img");
    enlarged.querySelector("img").src = picture.src;
    enlarged.querySelector("img").alt = picture.alt;
    enlarged.querySelector("p").textContent = picture.alt;
    enlarged.showModal();
});
enlarged.addEventListener("click", () => enlarged.close());
restore();
