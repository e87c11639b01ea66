# How Sphinx makes the site: of the Markdown files as they lie, so that the same links work in the repository.
import re

project = "vireo"
extensions = ["myst_parser"]
source_suffix = {".md": "markdown"}
root_doc = "README"
include_patterns = ["README.md", "CHANGELOG.md", "docs/**"]
exclude_patterns = ["build/**"]
html_theme = "alabaster"
html_theme_options = {"page_width": "1100px", "fixed_sidebar": False}
html_sidebars = {"**": ["globaltoc.html", "searchbox.html"]}
html_copy_source = False
myst_heading_anchors = 4
suppress_warnings = ["myst.header"]  # pages that begin below the first level

# What the sidebar lists, in the order in which it is read.
CONTENTS = """
```{toctree}
:hidden:
:caption: %s
%s
```
"""
GUIDES = ["tutorial", "questions", "traps", "commands", "scripting", "examples", "pictures", "host", "footage", "engine",
          "farm", "performance", "reliability", "building", "architecture"]


def add_contents(app, name, source):
    if name == root_doc:
        found = [guide for guide in GUIDES if "docs/" + guide in app.env.found_docs]
        source[0] += CONTENTS % ("Guides", "\n".join("docs/" + guide for guide in found))
        pages = sorted(page for page in app.env.found_docs if re.match("docs/reference/(?!README)", page))
        source[0] += CONTENTS % ("Reference", "\n".join(["docs/reference/README"] + pages + ["CHANGELOG"]))


def setup(app):
    app.connect("source-read", add_contents)
    app.connect("env-get-outdated", lambda *_: [root_doc])  # it lists pages that come and go
