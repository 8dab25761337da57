// The page's style sheet: for light and dark, wide and narrow screens, and for paper.
#pragma once

namespace ombrix::cli {

inline constexpr const char* kGalleryStyle = R"(
:root {
  color-scheme: light dark;
  --paper: #f6f6f5; --card: #fff; --ink: #1c1c1e; --quiet: #5d5d63; --line: #dcdcdb; --accent: #0b57b0;
}
@media (prefers-color-scheme: dark) {
  :root { --paper: #161617; --card: #202022; --ink: #ececee; --quiet: #a3a3aa; --line: #37373a; --accent: #8fbcff; }
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; scroll-padding-top: 1rem; -webkit-text-size-adjust: 100%; text-size-adjust: 100%; }
body {
  margin: 0 auto; max-width: 100rem; padding: clamp(1rem, 4vw, 3.5rem);
  background: var(--paper); color: var(--ink);
  font: 1rem/1.5 system-ui, -apple-system, "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif;
}
h1 { margin: 0 0 .75rem; font-size: clamp(1.6rem, 4vw, 2.4rem); font-weight: 650; line-height: 1.15;
  letter-spacing: -.015em; overflow-wrap: anywhere; }
h2 { margin: 0; font-size: 1.35rem; font-weight: 650; line-height: 1.25; letter-spacing: -.01em;
  overflow-wrap: anywhere; }
p { margin: .25rem 0; max-width: 46rem; }
a { color: var(--accent); text-underline-offset: .2em; }
:focus-visible { outline: 3px solid var(--accent); outline-offset: 3px; border-radius: 3px; }
code { font-family: ui-monospace, "SF Mono", Menlo, Consolas, "DejaVu Sans Mono", monospace; }
ul { margin: 0; padding: 0; list-style: none; }
nav ul { display: flex; flex-wrap: wrap; gap: .4rem 1.25rem; margin: 1.25rem 0 0; }
nav a { text-decoration: none; }
nav a:hover { text-decoration: underline; }
nav span { color: var(--quiet); font-size: .85em; font-variant-numeric: tabular-nums; }
main > section { margin-top: 3.25rem; padding-top: 1.5rem; border-top: 1px solid var(--line); }
.origin { max-width: none; color: var(--quiet); font-size: .875rem; overflow-wrap: anywhere; }
.facts { display: flex; flex-wrap: wrap; gap: .25rem 1.5rem; margin: .6rem 0 0; font-size: .875rem; }
.facts span { color: var(--quiet); }
.grid { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 18rem), 1fr)); gap: 1.5rem;
  margin-top: 1.5rem; align-items: start; }
figure { margin: 0; min-width: 0; }
.grid figure { border: 1px solid var(--line); border-radius: 8px; background: var(--card); overflow: clip; }
.grid figure > a { display: block; cursor: zoom-in; }
.grid figure > a:focus-visible { outline-offset: -3px; border-radius: 8px 8px 0 0; }
.grid img { display: block; width: 100%; height: auto; }
figcaption { padding: .7rem .85rem .8rem; }
.title { display: block; font-size: .9rem; font-weight: 600; line-height: 1.35; overflow-wrap: anywhere; }
.command { display: block; margin-top: .35rem; color: var(--quiet); font-size: .74rem; line-height: 1.5;
  overflow-wrap: anywhere; -webkit-user-select: all; user-select: all; cursor: copy; }
.save { display: block; margin-top: .35rem; font-size: .8rem; }
footer { margin-top: 3.5rem; padding-top: 1rem; border-top: 1px solid var(--line); color: var(--quiet);
  font-size: .85rem; }

/* One picture by itself, over the page: shown while its address is the page's. */
.view { display: none; }
.view:target {
  position: fixed; inset: 0; z-index: 1; display: grid; grid-template-rows: auto minmax(0, 1fr) auto;
  gap: .75rem; padding: clamp(.6rem, 2vw, 1.25rem); background: #101011; color: #ececee;
}
:root:has(.view:target) { overflow: hidden; }
.view { --accent: #8fbcff; --quiet: #a3a3aa; }
.view .bar { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; align-items: baseline; }
.view .bar span { margin-right: auto; color: var(--quiet); font-variant-numeric: tabular-nums; }
.view .bar a { padding: .15rem .1rem; }
.view .stage { display: block; min-height: 0; min-width: 0; cursor: zoom-out; }
.view img { display: block; width: 100%; height: 100%; object-fit: contain; }
.view figure { display: contents; }
.view figcaption { padding: 0; max-height: 30vh; overflow: auto; text-align: center; }
.view .command { max-width: 60rem; margin-inline: auto; font-size: .8rem; }

@media print {
  :root { color-scheme: light; --paper: #fff; --card: #fff; --ink: #000; --quiet: #444; --line: #bbb; --accent: #000; }
  @page { margin: 14mm; }
  body { max-width: none; padding: 0; font-size: 9.5pt; print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  nav, .view, .view:target, .save { display: none; }
  main > section { margin-top: 9mm; padding-top: 4mm; }
  h2, .origin, .facts { break-after: avoid; break-inside: avoid; }
  .grid { display: block; margin: 4mm -4mm 0 0; font-size: 0; }  /* no blanks between the pictures */
  .grid li { display: inline-block; width: calc((100% - 12.5mm) / 3); margin: 0 4mm 4mm 0; vertical-align: top;
    font-size: 9pt; break-inside: avoid; }
  .title { font-size: 8.5pt; }
  .command { font-size: 6.5pt; }
  figcaption { padding: 2mm; }
}
)";

}  // namespace ombrix::cli
