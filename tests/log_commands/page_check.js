// Uses the page of log export --html as a person would, mostly with keys. Sets the page's title to the list of failed checks,
// or to "fine". Appended to the page of sample_simulator_11.zlg, which a headless browser then loads: see ./dev page.
"use strict";
(() => {
  const failed = [];
  const expect = (what, condition) => { if (!condition) failed.push(what); };
  const press = (key, options = {}) =>
    (document.activeElement || document.body).dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true, cancelable: true, ...options }));
  const all = selector => [...document.querySelectorAll(selector)];
  const seen = element => element.checkVisibility();
  const find = document.getElementById("find"), count = () => document.getElementById("count").textContent;

  const calls = all("details"), top = all("main > details");
  expect("the log has calls within calls", calls.length > top.length && top.length > 100);
  expect("a call within a call is folded at first", calls.every(call => call.parentElement.tagName === "MAIN" || !seen(call)));

  press("/");
  expect("/ goes to the search", document.activeElement === find);
  find.value = "is not CALCULATED";
  find.dispatchEvent(new Event("input"));
  const here = () => document.querySelector(".here");
  expect("a text is found, whatever its case", here() && here().textContent.includes("\"colour\" is not calculated"));
  expect("and unfolded", here() && seen(here()));
  expect("and counted", /^1 of [1-9]/.test(count()));
  find.value = "GetOverallProp";
  find.dispatchEvent(new Event("input"));
  const first = here();
  press("Enter");
  expect("Enter goes on", here() !== first && count().startsWith("2 of "));
  press("F3", { shiftKey: true });
  expect("Shift+F3 goes back", here() === first && seen(first));
  press("F3", { shiftKey: true });
  expect("and around", /^(\d+) of \1$/.test(count()));
  find.value = "no line has this";
  find.dispatchEvent(new Event("input"));
  expect("what is not there is said", count() === "not found" && !here() && !document.querySelector(".hit"));
  find.value = "";
  find.dispatchEvent(new Event("input"));
  expect("an empty search marks nothing", count() === "" && !document.querySelector(".hit"));
  press("Escape");
  expect("Escape leaves the search", document.activeElement !== find);

  press("a", { ctrlKey: true });
  expect("Ctrl+A unfolds all", calls.every(call => call.open));
  press("b", { ctrlKey: true });
  expect("Ctrl+B folds all", calls.every(call => !call.open));

  const outer = calls.find(call => call.querySelector("details")), summary = outer.querySelector("summary");
  summary.focus();
  press("ArrowRight");
  expect("the right arrow unfolds", outer.open);
  press("ArrowRight");
  expect("and then goes in", document.activeElement === outer.querySelector("details > summary:not(:scope > summary)"));
  press("ArrowLeft");
  expect("the left arrow goes out", document.activeElement === summary && outer.open);
  press("ArrowLeft");
  expect("and folds", !outer.open);
  press("ArrowDown");
  expect("the down arrow goes on", document.activeElement === top[top.indexOf(outer) + 1].firstElementChild);
  press("ArrowUp");
  expect("the up arrow goes back", document.activeElement === summary);

  const pressed = id => document.getElementById(id).getAttribute("aria-pressed") === "true";
  const kinds = ["f", "v", "w"], kindOf = line => kinds.findIndex(kind => line.classList.contains(kind)), visited = [];
  for (const line of all(".f,.v,.w")) { press("F4"); visited.push(here()); expect("F4 unfolds", seen(here())); }
  expect("F4 goes to each error and warning once", new Set(visited).size === all(".f,.v,.w").length);
  expect("to failures first, then violations, then warnings",
    kindOf(visited[0]) === 0 && visited.every((line, i) => i === 0 || kindOf(visited[i - 1]) <= kindOf(line)));
  expect("and counts", count() === "warning, " + visited.length + " of " + visited.length);
  press("F4", { shiftKey: true });
  expect("Shift+F4 goes back", here() === visited[visited.length - 2]);
  document.getElementById("filter-w").click();
  expect("a filter hides its kind", !pressed("filter-w") && all(".w").every(line => !seen(line)));
  press("F4");
  expect("and F4 leaves it out", here() === visited[0] && count() === "failure, 1 of " + all(".f,.v").length);
  document.getElementById("filter-w").click();
  expect("and shows it again", pressed("filter-w") && all("main > .w").every(seen));
  const colours = () => getComputedStyle(document.body).backgroundColor;
  const before = colours();
  document.getElementById("colour").click();
  expect("the colours change", colours() !== before);
  document.getElementById("colour").click();
  expect("and change back", colours() === before);
  document.title = failed.length ? "failed: " + failed.join("; ") : "fine";
})();
