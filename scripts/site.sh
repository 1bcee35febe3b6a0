#!/bin/sh
# Builds the site of the documents, with search, into build/site, and checks its links and anchors; installs
# mkdocs and its theme first where they are missing on a Debian machine.
# Usage: scripts/site.sh [serve]        serve: also shows it at http://127.0.0.1:8000
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh site

# The pages as they lie in the repository, so that their links hold. A fence keeps its language alone: the
# words behind it are for the test of the commands.
pages=build/site-pages
rm -rf "$pages" build/site
for page in $(git ls-files --cached --others --exclude-standard '*.md'); do
    [ -f "$page" ] || continue
    mkdir -p "$pages/$(dirname "$page")"
    sed -E 's/^```([a-z]+) .*/```\1/' "$page" > "$pages/$page"
done

# What pages show and link to.
cp -R --parents docs/site.css docs/pictures LICENSE CITATION.cff workflow/config.yaml \
    workflow/slurm/profile/config.yaml "$pages"

/usr/bin/mkdocs build --strict --quiet
scripts/check_site.py build/site
echo "build/site/index.html"
[ "${1:-}" != serve ] || exec python3 -m http.server --bind 127.0.0.1 --directory build/site 8000
