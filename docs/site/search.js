// SPDX-License-Identifier: Apache-2.0
// The search field of every page. search-index.js has the entries: {name, within, page, guide}.
"use strict";

const most = 40;

/** Lower numbers are better matches; undefined is none. */
function rank(entry, words) {
    const name = entry.name.toLowerCase();
    const whole = name + " " + entry.within.toLowerCase();
    if (!words.every(word => whole.includes(word)))
        return undefined;
    const text = words.join(" ");
    if (name === text)
        return 0;
    const allInName = words.every(word => name.includes(word));
    if (name.startsWith(text) || entry.guide && allInName)
        return 1;
    return allInName ? 2 : 3;
}

function find(text) {
    const words = text.toLowerCase().split(/[\s:.()]+/).filter(word => word !== "");
    if (words.length === 0)
        return [];
    return searchIndex.map(entry => ({entry, rank: rank(entry, words)}))
        .filter(found => found.rank !== undefined)
        .sort((left, right) => left.rank - right.rank || right.entry.guide - left.entry.guide || left.entry.name.length - right.entry.name.length)
        .slice(0, most)
        .map(found => found.entry);
}

function item(entry) {
    const link = document.createElement("a");
    link.href = entry.page;
    link.textContent = entry.name;
    const within = document.createElement("small");
    within.textContent = entry.within;
    link.append(within);
    const line = document.createElement("li");
    line.append(link);
    return line;
}

function show(results, text) {
    const found = find(text);
    results.replaceChildren(...found.map(item));
    results.hidden = found.length === 0;
}

document.addEventListener("DOMContentLoaded", () => {
    const field = document.querySelector("#search input");
    const results = document.querySelector("#results");
    field.addEventListener("input", () => show(results, field.value));
    field.form.addEventListener("submit", event => {
        event.preventDefault();
        results.querySelector("a")?.click();
    });
    document.addEventListener("keydown", event => {
        if (event.key === "Escape")
            results.hidden = true;
        else if (event.key === "/" && document.activeElement !== field) {
            event.preventDefault();
            field.focus();
        }
    });
    document.addEventListener("click", event => {
        if (!event.target.closest("#search, #results"))
            results.hidden = true;
    });
});
