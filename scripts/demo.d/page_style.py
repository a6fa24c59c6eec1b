"""How the pages of scripts/demo look."""

STYLE = """
:root { --ink: #1d2430; --soft: #5d6878; --line: #d9dee6; --paper: #f4f6f9; --card: #fff; --accent: #2f5d8c; --good: #2c7a4b; --bad: #b3261e; }
* { box-sizing: border-box; }
body { margin: 0; background: var(--paper); color: var(--ink); font: 15px/1.5 "DejaVu Sans", "Segoe UI", Helvetica, Arial, sans-serif; }
main { max-width: 1240px; margin: 0 auto; padding: 32px 24px 64px; }
h1 { font-size: 28px; margin: 0 0 6px; letter-spacing: -0.01em; }
h2 { font-size: 19px; margin: 0; }
h3 { font-size: 13px; margin: 18px 0 8px; color: var(--soft); font-weight: 600; }
p { margin: 0 0 10px; max-width: 80ch; }
.numbers { display: flex; flex-wrap: wrap; gap: 12px; margin: 20px 0 30px; padding: 0; list-style: none; }
.numbers li { background: var(--card); border: 1px solid var(--line); border-radius: 8px; padding: 10px 18px; color: var(--soft); font-size: 13px; }
.numbers b { display: block; font-size: 22px; color: var(--accent); font-variant-numeric: tabular-nums; }
section { background: var(--card); border: 1px solid var(--line); border-radius: 10px; padding: 20px; margin: 0 0 22px; }
.beside { display: grid; grid-template-columns: 260px minmax(0, 1fr); gap: 28px; }
figure { margin: 0; }
figcaption { font-size: 12px; color: var(--soft); line-height: 1.45; font-variant-numeric: tabular-nums; margin-top: 6px; }
figcaption b { color: var(--ink); font-size: 13px; }
img { display: block; max-width: 100%; height: auto; image-rendering: pixelated; border-radius: 3px;
  background: repeating-conic-gradient(#e3e7ed 0 25%, #fff 0 50%) 0 0 / 16px 16px; }
.original img { width: 240px; }
.row { display: grid; gap: 16px; align-items: start; grid-template-columns: repeat(6, minmax(0, 1fr)); }
.row.frames { grid-template-columns: repeat(8, minmax(0, 1fr)); gap: 8px; }
.row.layouts { grid-template-columns: repeat(5, minmax(0, 1fr)); max-width: 780px; }
.original dl { display: grid; grid-template-columns: auto 1fr; gap: 2px 12px; margin: 12px 0 0; font-size: 13px; }
.original dt { color: var(--soft); }
.original dd { margin: 0; font-variant-numeric: tabular-nums; }
.yes { color: var(--good); } .no { color: var(--bad); font-weight: 700; }
footer { color: var(--soft); font-size: 13px; }
@media (max-width: 900px) { .beside { grid-template-columns: 1fr; } .row, .row.frames { grid-template-columns: repeat(8, minmax(0, 1fr)); gap: 8px; }
.row.layouts { grid-template-columns: repeat(3, minmax(0, 1fr)); } }
"""
