// What surrounds the tree in the HTML page: style, tools and script. A call is a details element, which browsers fold without a
// script and from the keyboard; arguments and messages are paragraphs. Class ci is a call of the logged component, co a call of
// one of the simulator's objects; ai and ao are arguments in and out; n, k, w, v, f are infos, queries of the system, warnings,
// violations, failures. For each kind that is hidden, the main element has a class: nf for failures, for instance.
#pragma once

#include <string_view>

namespace zelt::ctl {

inline constexpr std::string_view kPageTop = R"page(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>)page";

inline constexpr std::string_view kPageBetween = R"page(</title>
<style>
:root { color-scheme: light dark; --back: #fff; --text: #1b1f24; --soft: #5b6470; --line: #d5dae0; --tool: #f3f5f7;
  --in: #0a5ea8; --out: #7a3e9d; --bad: #b3261e; --warn: #8a5a00; --mark: #ffe38a; --here: #ff9c3a; }
@media (prefers-color-scheme: dark) { :root:not(.light) { --back: #16191d; --text: #e4e7ea; --soft: #98a2ad;
  --line: #333a42; --tool: #20252b; --in: #79b8ff; --out: #d2a8ff; --bad: #ff8f85; --warn: #f0b849; --mark: #5c4a00;
  --here: #9a5a00; } }
:root.dark { color-scheme: dark; --back: #16191d; --text: #e4e7ea; --soft: #98a2ad; --line: #333a42; --tool: #20252b;
  --in: #79b8ff; --out: #d2a8ff; --bad: #ff8f85; --warn: #f0b849; --mark: #5c4a00; --here: #9a5a00; }
:root.light { color-scheme: light; }
body { margin: 0; background: var(--back); color: var(--text); font: 14px/1.5 system-ui, sans-serif; }
header { position: sticky; top: 0; z-index: 1; display: flex; flex-wrap: wrap; gap: 6px; align-items: center;
  padding: 6px 12px; background: var(--tool); border-bottom: 1px solid var(--line); font-size: 13px; }
h1 { font-size: 15px; margin: 0 12px 0 0; }
input, button { font: inherit; padding: 2px 6px; }
input { flex: 1 1 10em; min-width: 9em; max-width: 24em; }
main { position: relative; padding: 8px 12px 40vh 6.8em; font: 13px/1.5 ui-monospace, Consolas, monospace;
  overflow-wrap: anywhere; }
details { margin-left: 1.2em; border-left: 1px solid var(--line); }
main > details { margin-left: 0; border-left: 0; }
summary { cursor: pointer; padding-left: .3em; }
summary:focus-visible { outline: 2px solid var(--in); }
p { margin: 0 0 0 1.7em; }
main > p { margin-left: 0; }
i { position: absolute; left: 0; width: 5.6em; color: var(--soft); font-style: normal; text-align: right;
  user-select: none; }
b, u, s, q { unicode-bidi: isolate; }
b { font-weight: 600; }
u { text-decoration: none; color: var(--soft); }
s { text-decoration: none; color: var(--soft); }
q { quotes: none; }
.ci > summary b { color: var(--in); } .co > summary b { color: var(--out); }
.ci > summary b::before { content: ">\A0"; } .co > summary b::before { content: "<\A0"; }
.ai s::before { content: "in "; } .ao s::before { content: "out "; }
.ai s::after, .ao s::after { content: " ="; }
.n, .k { color: var(--soft); } .w { color: var(--warn); } .v, .f { color: var(--bad); }
.w::before, .v::before, .f::before { font-weight: 600; }
.w::before { content: "\26A0  "; } .v::before { content: "\2716  "; } .f::before { content: "\2716  "; }
.nf .f, .nv .v, .nw .w, .nk .k { display: none; }
.has-bad > summary::after { content: " \2716"; color: var(--bad); }
.has-warn:not(.has-bad) > summary::after { content: " \26A0"; color: var(--warn); }
.hit { background: var(--mark); } .here { background: var(--here); }
.hit, .here, .hit :is(b, s, u), .here :is(b, s, u) { color: var(--text); }
button[aria-pressed=false] { opacity: .55; text-decoration: line-through; }
#count { color: var(--soft); min-width: 6em; }
/* A long name begins beside its mark and breaks anywhere. */
@media (max-width: 600px) { main { padding-left: 58px; } i { width: 50px; font-size: 11px; line-height: 1.77; } b { word-break: break-all; } }
@media print { header { position: static; } }
</style>
</head>
<body>
<header>
<h1>)page";

inline constexpr std::string_view kPageHead = R"page(</h1>
<input id="find" type="search" placeholder="Search (Ctrl+F or /)" aria-label="Search in the log">
<button id="back" title="Previous (Shift+Enter, Shift+F3)">Previous</button>
<button id="next" title="Next (Enter, F3)">Next</button>
<span id="count" role="status"></span>
<button id="error" title="Next failure, violation or warning (F4; back: Shift+F4)">Next error</button>
<span id="filters" role="group" aria-label="Shown and visited by F4"></span>
<button id="open" title="Ctrl+A">Expand all</button>
<button id="close" title="Ctrl+B">Collapse all</button>
<button id="colour">Light or dark</button>
</header>
)page";

inline constexpr std::string_view kPageEnd = R"page(</main>
<script>
"use strict";
const get = id => document.getElementById(id), main = document.querySelector("main");
let hits = [], here = -1, asked = "";
for (const [kind, mark] of [[".v,.f", "has-bad"], [".w", "has-warn"]])
  for (const bad of main.querySelectorAll(kind))
    for (let call = bad.closest("details"); call && !call.classList.contains(mark); call = call.parentElement.closest("details"))
      call.classList.add(mark);
function reveal(line, focus) {
  for (let call = line.closest("details"); call; call = call.parentElement.closest("details"))
    if (!(line.tagName === "SUMMARY" && call === line.parentElement)) call.open = true;
  line.scrollIntoView({ block: "center" });
  if (focus && line.tagName === "SUMMARY") line.focus({ preventScroll: true });
}
function search(text) {
  for (const hit of hits) hit.classList.remove("hit", "here");
  hits = []; here = -1; asked = text;
  const wanted = text.toLowerCase();
  if (wanted)
    for (const line of main.querySelectorAll("summary,p"))
      if (line.textContent.slice(line.firstChild.textContent.length).toLowerCase().includes(wanted)) hits.push(line);
  for (const hit of hits) hit.classList.add("hit");
}
function go(step) {
  if (get("find").value !== asked) search(get("find").value);
  if (hits.length) {
    if (here >= 0) hits[here].classList.remove("here");
    here = here < 0 ? (step > 0 ? 0 : hits.length - 1) : (here + step + hits.length) % hits.length;
    hits[here].classList.add("here");
    reveal(hits[here], false);
  }
  get("count").textContent = !asked ? "" : hits.length ? (here + 1) + " of " + hits.length : "not found";
}
const kinds = [["f", "failure"], ["v", "violation"], ["w", "warning"], ["k", "system query", "system queries"]];
let errors = [], error = -1;
function collect() {
  const marked = error >= 0 ? errors[error] : null;
  if (marked) marked.classList.remove("here");
  errors = kinds.slice(0, 3).flatMap(([kind]) => main.classList.contains("n" + kind) ? [] : [...main.querySelectorAll("." + kind)]);
  error = errors.indexOf(marked);
}
function goError(step) {
  if (!errors.length) { get("count").textContent = "no errors"; return; }
  if (error >= 0) errors[error].classList.remove("here");
  error = error < 0 ? (step > 0 ? 0 : errors.length - 1) : (error + step + errors.length) % errors.length;
  errors[error].classList.add("here");
  reveal(errors[error], false);
  const [, name] = kinds.find(([kind]) => errors[error].classList.contains(kind));
  get("count").textContent = name + ", " + (error + 1) + " of " + errors.length;
}
for (const [kind, one, many = one + "s"] of kinds) {
  const count = main.querySelectorAll("." + kind).length;
  if (!count) continue;
  const filter = document.createElement("button"), show = () => {
    const shown = !main.classList.contains("n" + kind);
    filter.setAttribute("aria-pressed", shown);
    filter.textContent = count + " " + (count === 1 ? one : many) + (kind === "k" && !shown ? " hidden" : "");
  };
  filter.id = "filter-" + kind;
  filter.onclick = () => { main.classList.toggle("n" + kind); show(); collect(); };
  get("filters").append(filter, " ");
  show();
}
collect();
function fold(open) { for (const call of main.querySelectorAll("details")) call.open = open; }
const outer = call => call.parentElement.closest("details");
function callFrom(element, way) { while (element && element.tagName !== "DETAILS") element = element[way]; return element; }
function below(call) {
  let next = call.open ? callFrom(call.firstElementChild, "nextElementSibling") : null;
  for (; !next && call; call = outer(call)) next = callFrom(call.nextElementSibling, "nextElementSibling");
  return next;
}
function above(call) {
  let next = callFrom(call.previousElementSibling, "previousElementSibling");
  if (!next) return outer(call);
  for (let last = next; last; last = last.open && callFrom(last.lastElementChild, "previousElementSibling")) next = last;
  return next;
}
get("find").addEventListener("input", () => { search(get("find").value); go(1); });
get("next").onclick = () => go(1);
get("back").onclick = () => go(-1);
get("error").onclick = () => goError(1);
get("open").onclick = () => fold(true);
get("close").onclick = () => fold(false);
get("colour").onclick = () => {
  const root = document.documentElement.classList;
  const dark = root.contains("dark") || (!root.contains("light") && matchMedia("(prefers-color-scheme: dark)").matches);
  root.remove("dark", "light");
  root.add(dark ? "light" : "dark");
};
document.addEventListener("keydown", event => {
  const typing = event.target === get("find"), command = event.ctrlKey || event.metaKey;
  const done = () => event.preventDefault();
  if ((command && event.key === "f") || (event.key === "/" && !typing)) { get("find").focus(); get("find").select(); done(); }
  else if (event.key === "F3" || (typing && event.key === "Enter")) { go(event.shiftKey ? -1 : 1); done(); }
  else if (event.key === "F4") { goError(event.shiftKey ? -1 : 1); done(); }
  else if (typing) { if (event.key === "Escape" && !get("find").value) get("find").blur(); }
  else if (command && event.key === "a") { fold(true); done(); }
  else if (command && event.key === "b") { fold(false); done(); }
  else if (["ArrowDown", "ArrowUp", "ArrowLeft", "ArrowRight"].includes(event.key) && !command && !event.altKey) {
    const call = document.activeElement.tagName === "SUMMARY" ? document.activeElement.parentElement : null;
    const focus = next => { if (next) { next.firstElementChild.focus(); done(); } };
    if (event.key === "ArrowDown") focus(call ? below(call) : callFrom(main.firstElementChild, "nextElementSibling"));
    else if (!call) return;
    else if (event.key === "ArrowUp") focus(above(call));
    else if (event.key === "ArrowRight" && call.open) focus(callFrom(call.firstElementChild, "nextElementSibling"));
    else if (event.key === "ArrowLeft" && !call.open) focus(outer(call));
    else { call.open = event.key === "ArrowRight"; done(); }
  }
});
</script>
</body>
</html>
)page";

}  // namespace zelt::ctl
