"""How Sphinx makes the site of README.md, docs/, the examples and the reference; scripts/docs runs it."""
import logging
import os
import re
from pathlib import Path

project = "vireo"
version = release = os.environ["VIREO_VERSION"]
extensions = ["myst_parser", "breathe"]
html_theme = "furo"
html_title = f"vireo {version}"
html_static_path = ["static"]
html_css_files = ["site.css"]
html_favicon = "../../packaging/desktop/vireo-view.svg"
# Debian's copy of the theme knows them, but not when to take them.
html_theme_options = {
    "dark_css_variables": {
        "color-problematic": "#ee8a6a",
        "color-foreground-primary": "#d6dade",
        "color-foreground-secondary": "#9ca0a5",
        "color-foreground-muted": "#81868d",
        "color-foreground-border": "#666666",
        "color-background-primary": "#131416",
        "color-background-secondary": "#1a1c1e",
        "color-background-hover": "#1e2124ff",
        "color-background-hover--transparent": "#1e212400",
        "color-background-border": "#303335",
        "color-background-item": "#444444",
        "color-brand-primary": "#5aa7f0",
        "color-brand-content": "#5aa7f0",
        "color-highlighted-background": "#083563",
        "color-highlight-on-target": "#333300",
        "color-api-keyword": "#9ca0a5",
        "color-card-background": "#18181a",
    }
}
html_show_copyright = html_show_sphinx = html_copy_source = False
myst_heading_anchors = 4
breathe_projects = {"vireo": os.environ["VIREO_REFERENCE_XML"]}
breathe_default_project = "vireo"
exclude_patterns = ["changes/[a-z]*"]
cpp_id_attributes = ["VIREO_EXPORT", "TAVO_BASE_EXPORT", "TAVO_POINTS_EXPORT", "TAVO_WGL_EXPORT", "VIREO_SHOW_EXPORT"]

# What the names of docs/reference.md lead to.
NAME = re.compile(r"\b(tavo::\w+(?:::\w+)?|wglGetCurrentContext)(\(\))?")


def link_names(app, document, source):
    if document == "docs/reference":
        source[0] = NAME.sub(r"{cpp:any}`\1`", source[0])


def is_no_duplicate(record):
    """Breathe declares a namespace on the page of every header that is in it, and overloads twice that are named by `using`."""
    return not record.getMessage().startswith("Duplicate C++ declaration")


def setup(app):
    logging.getLogger("sphinx.sphinx.domains.cpp").addFilter(is_no_duplicate)
    app.connect("source-read", link_names)
