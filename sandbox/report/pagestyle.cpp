#include "sandbox/report/pagestyle.h"

namespace sandbox::report {

const char* const pageStyle = R"css(
:root {
  color-scheme: light dark;
  --ground: #ffffff; --lane: #f3f5f7; --ink: #1b2026; --quiet: #5c6672; --line: #d5dae0;
  --request: #2463b4; --transfer: #1f7a4d; --move: #a85a00; --on: #ffffff;
  --fault: #c0202f; --notification: #7a3fb0; --program: #0f7480; --cut: #e6eaee;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ground: #14181d; --lane: #1c2229; --ink: #e6eaee; --quiet: #a0abb7; --line: #343d47;
    --request: #6ea8f0; --transfer: #5cc08d; --move: #e5a04c; --on: #10141a;
    --fault: #ff7a85; --notification: #c79af0; --program: #58c4d0; --cut: #262e37;
  }
}
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1.5rem 1.25rem 3rem; max-width: 90rem; background: var(--ground);
  color: var(--ink); font: 1rem/1.5 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 .25rem; overflow-wrap: anywhere; }
h2 { font-size: 1.125rem; margin: 2rem 0 .5rem; }
p { margin: .25rem 0; overflow-wrap: anywhere; }
.quiet { color: var(--quiet); }
.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; margin: 1rem 0 .5rem; padding: 0;
  list-style: none; font-size: .875rem; }
.legend svg { width: .875rem; height: .875rem; margin-right: .4rem; vertical-align: -.1rem; }
.scroll { overflow-x: auto; border: 1px solid var(--line); border-radius: 4px; }
.scroll:focus-visible { outline: 2px solid var(--request); outline-offset: 2px; }
.scroll svg { display: block; }
svg text { font-family: inherit; font-size: 11px; fill: var(--quiet); }
svg text.lanetitle { font-weight: 600; fill: var(--ink); }
svg text.cut { text-anchor: middle; }
svg rect.lane { fill: var(--lane); }
svg .grid { stroke: var(--line); fill: none; }
svg rect.cut { fill: var(--cut); }
.bar rect { fill: var(--c); }
.bar text { font-size: 10px; fill: var(--on); pointer-events: none; }
.bar.failed rect { stroke: var(--fault); stroke-width: 2; }
.bar.open rect { fill-opacity: .45; stroke: var(--c); stroke-dasharray: 3 2; }
.bar.open text { fill: var(--ink); }
.bar:hover rect { stroke: var(--ink); }
.request { --c: var(--request); } .transfer { --c: var(--transfer); } .move { --c: var(--move); }
.mark { fill: var(--c, var(--quiet)); }
.mark.notification { --c: var(--notification); } .mark.program, .mark.command { --c: var(--program); }
.mark.end, .mark.host { --c: var(--ink); } .mark.fault, .mark.failed { --c: var(--fault); }
table { width: 100%; border-collapse: collapse; font-size: .875rem; }
th, td { padding: .2rem .6rem .2rem 0; text-align: left; vertical-align: top;
  border-bottom: 1px solid var(--line); }
th { font-weight: 600; }
td.number, th.number { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums; }
td.time { white-space: nowrap; font-variant-numeric: tabular-nums; }
td.what { overflow-wrap: anywhere; width: 60%; }
tr.failed td.what { color: var(--fault); }
@media (max-width: 40rem) {
  body { padding: 1rem .75rem 2rem; }
  thead { position: absolute; left: -10000px; }
  tbody tr { display: flex; flex-wrap: wrap; column-gap: .75rem; padding: .35rem 0;
    border-bottom: 1px solid var(--line); }
  td, td.number { border: 0; padding: 0; text-align: left; color: var(--quiet); }
  td.what { flex-basis: 100%; color: var(--ink); }
}
@media print {
  @page { size: A4 landscape; margin: 12mm; }
  :root { color-scheme: light; }
  body { padding: 0; max-width: none; font-size: 9pt; }
  .scroll { overflow: visible; border: 0; }
  .scroll svg { width: 100%; height: auto; }
  .mark, svg rect { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
  tr { break-inside: avoid; }
  h2 { break-after: avoid; }
}
)css";

} // namespace sandbox::report
