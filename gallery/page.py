"""The index page: all pictures with their captions, in plain HTML that needs nothing else."""

import html
import json
from pathlib import Path

STYLE = """
:root { color-scheme: light; --ink: #1d2733; --muted: #66727f; --rule: #e3e8ee; --accent: #2f6f9f; }
* { box-sizing: border-box; }
body { margin: 0; color: var(--ink); background: #f6f8fa;
       font: 16px/1.55 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
header, main, footer { max-width: 1180px; margin: 0 auto; padding: 0 24px; }
header { padding-top: 48px; }
h1 { font-size: 34px; margin: 0 0 8px; letter-spacing: -0.01em; }
h2 { font-size: 24px; margin: 56px 0 16px; }
h3 { font-size: 18px; margin: 0 0 10px; }
p { margin: 0 0 12px; }
nav { margin: 20px 0 0; display: flex; flex-wrap: wrap; gap: 8px; }
nav a { padding: 5px 13px; border: 1px solid var(--rule); border-radius: 16px; background: white;
        text-decoration: none; font-size: 14px; }
a { color: var(--accent); }
figure { margin: 0 0 28px; padding: 22px 24px; background: white; border: 1px solid var(--rule);
         border-radius: 10px; }
figure img { display: block; width: 100%; height: auto; margin: 0 0 14px; }
figcaption p { max-width: 62em; }
.facts { display: flex; flex-wrap: wrap; gap: 6px 40px; color: var(--muted); font-size: 14px; }
.facts table { border-collapse: collapse; align-self: flex-start; }
.facts td { padding: 1px 18px 1px 0; }
.facts td:first-child { font-family: ui-monospace, "DejaVu Sans Mono", monospace; font-size: 13px; }
.facts td + td { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
.facts ul { list-style: none; margin: 0; padding: 0; flex: 1 1 24em; }
.facts li::before { content: "✓"; color: #3d8b5f; margin-right: 8px; }
.files { margin: 10px 0 0; font-size: 14px; color: var(--muted); }
footer { padding-bottom: 48px; color: var(--muted); font-size: 14px; }
"""


def duration(seconds):
    for unit, scale in (("s", 1.0), ("ms", 1e3), ("µs", 1e6)):
        if seconds * scale >= 1:
            return f"{seconds * scale:.3g} {unit}"
    return f"{seconds * 1e9:.3g} ns"


def figure(exhibit):
    calls = "".join(
        f"<tr><td>{html.escape(name)}</td>"
        f"<td>{f'{times} calls, ' if times > 1 else ''}{duration(seconds)}</td></tr>"
        for name, seconds, times in exhibit["calls"]
    )
    checks = "".join(f"<li>{html.escape(check)}</li>" for check in exhibit["checks"])
    files = ", ".join(f'<a href="{name}">{name}</a>' for name in exhibit["meshes"])
    title, picture = html.escape(exhibit["title"]), exhibit["picture"]
    return f"""<figure>
<h3>{title}</h3>
<a href="{picture}"><img src="{picture}" alt="{title}" loading="lazy"></a>
<figcaption>
<p>{exhibit["caption"]}</p>
<div class="facts"><table>{calls}</table><ul>{checks}</ul></div>
<p class="files">{"Meshes: " + files if files else ""}</p>
</figcaption>
</figure>"""


def write(folder, families, version, model):
    """Reads what the families left and writes index.html; returns its path and the numbers of
    pictures and checks."""
    folder = Path(folder)
    parts = [json.loads((folder / f"{name}.json").read_text(encoding="utf-8")) for name in families]
    links = "".join(f'<a href="#{p["family"]}">{html.escape(p["title"])}</a>' for p in parts)
    body = "\n".join(
        f'<h2 id="{p["family"]}">{html.escape(p["title"])}</h2>\n'
        + "\n".join(figure(exhibit) for exhibit in p["exhibits"])
        for p in parts
    )
    exhibits = [exhibit for part in parts for exhibit in part["exhibits"]]
    checks = sum(len(exhibit["checks"]) for exhibit in exhibits)
    path = folder / "index.html"
    path.write_text(
        f"""<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>tessalo2d: gallery</title>
<style>{STYLE}</style>
</head>
<body>
<header>
<h1>tessalo2d</h1>
<p>What version {html.escape(version)} does, on wing sections of the NACA four-digit series and on
the surface model {html.escape(model)}. Times are those of single calls on this machine, the best of
three for short ones. Every line with a tick was checked by the program that drew the picture.</p>
<nav>{links}</nav>
</header>
<main>
{body}
</main>
<footer><p>{len(exhibits)} pictures, {checks} checks. Meshes are in VTU, which ParaView reads. The
programs are in the folder gallery/.</p></footer>
</body>
</html>
""",
        encoding="utf-8",
    )
    return path, len(exhibits), checks
