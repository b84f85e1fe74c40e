"""Checks that each folder includes only itself and the folders listed for it here."""
import pathlib
import re
import sys

ALLOWED = {
    "platform": [],
    "ID3TagEditor/model": ["platform"],
    "ID3TagEditor/parse": ["platform", "ID3TagEditor/model"],
    "ID3TagEditor/create": ["platform", "ID3TagEditor/model"],
    "ID3TagEditor": ["platform", "ID3TagEditor/model", "ID3TagEditor/parse", "ID3TagEditor/create"],
    "ID3v2": ["platform"],
    "QuillmarkKit/model": ["platform"],
    "QuillmarkKit/store/file": ["platform", "QuillmarkKit/model"],
    "QuillmarkKit/store/engine": ["platform", "QuillmarkKit/model", "QuillmarkKit/store/file", "ID3TagEditor", "ID3TagEditor/model",
                                  "ID3TagEditor/parse", "ID3v2"],
    "QuillmarkKit/store/standard": ["platform", "QuillmarkKit/model", "QuillmarkKit/store/file", "ID3v2"],
    "QuillmarkKit/store": ["platform", "QuillmarkKit/model", "QuillmarkKit/store/file", "QuillmarkKit/store/engine",
                           "QuillmarkKit/store/standard", "ID3TagEditor", "ID3TagEditor/model", "ID3v2"],
    "QuillmarkKit/transfer": ["platform", "QuillmarkKit/model", "QuillmarkKit/store"],
    "quillmark": ["platform", "QuillmarkKit/model", "QuillmarkKit/store", "QuillmarkKit/transfer"],
}

root = pathlib.Path(sys.argv[1])
wrong = []
for top in sorted({folder.split("/")[0] for folder in ALLOWED}):
    for source in [*(root / top).rglob("*.h"), *(root / top).rglob("*.cpp")]:
        folder = str(source.parent.relative_to(root))
        for included in re.findall(r'#include "([^"]+)"', source.read_text()):
            if str(pathlib.PurePath(included).parent) not in [folder, *ALLOWED.get(folder, [])] or folder not in ALLOWED:
                wrong.append(f"{source.relative_to(root)} includes {included}")
print("\n".join(wrong) or "Every include runs downwards.")
sys.exit(1 if wrong else 0)
