# Quillet's actions in the Nautilus context menu (Nautilus 43 and later, extension API 4.0;
# loaded when python3-nautilus is installed). An action appears only when every selected item is
# a local file of a type it accepts, and hands the files to "quillet-app --service WORD".
import os
import subprocess

import gi

gi.require_version("Nautilus", "4.0")
from gi.repository import GObject, Nautilus  # noqa: E402

PDF = ("application/pdf",)
IMAGES = ("image/png", "image/jpeg", "image/tiff", "image/heif", "image/heic", "image/avif", "image/webp", "image/gif")

# word, accepted types, fewest files, title, translated titles
ENTRIES = (
    ("compress", PDF, 1, "Compress with Quillet", {"zh_CN": "使用 Quillet 压缩"}),
    ("merge", PDF + IMAGES, 2, "Merge with Quillet", {"zh_CN": "使用 Quillet 合并"}),
    ("convert", PDF, 1, "Convert to PNG with Quillet", {"zh_CN": "使用 Quillet 转换为 PNG"}),
    ("clean", PDF, 1, "Remove metadata with Quillet", {"zh_CN": "使用 Quillet 移除元数据"}),
    ("ocr", PDF, 1, "Make searchable with Quillet", {"zh_CN": "使用 Quillet 使文字可搜索"}),
    ("pagenumbers", PDF, 1, "Add page numbers with Quillet", {"zh_CN": "使用 Quillet 添加页码"}),
    ("images", IMAGES, 1, "Make a PDF with Quillet", {"zh_CN": "使用 Quillet 制作 PDF"}),
)

COMMAND = ["quillet-app", "--service"]


def _languages():
    # The order gettext follows: LANGUAGE may list several, then the first of the others set.
    for variable in ("LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"):
        value = os.environ.get(variable)
        if value:
            return [part.split(".")[0].split("@")[0] for part in value.split(":") if part]
    return []


def _title(title, translations):
    for language in _languages():
        if language in translations:
            return translations[language]
        if language == "zh" or language.startswith("zh_Hans"):
            return translations.get("zh_CN", title)
        if language.startswith("en") or language == "C":
            return title
    return title


def _accepts(item, types):
    return any(item.is_mime_type(name) for name in types)


class QuilletMenuProvider(GObject.GObject, Nautilus.MenuProvider):
    def get_file_items(self, files):
        if not files or any(item.get_uri_scheme() != "file" or item.is_directory() for item in files):
            return []
        items = []
        for word, types, fewest, title, translations in ENTRIES:
            if len(files) < fewest or not all(_accepts(item, types) for item in files):
                continue
            menu_item = Nautilus.MenuItem(name="Quillet::" + word, label=_title(title, translations))
            menu_item.connect("activate", self._perform, word, files)
            items.append(menu_item)
        return items

    def _perform(self, _menu_item, word, files):
        paths = [item.get_location().get_path() for item in files]
        # Its own session, so the app outlives a restarted file manager.
        subprocess.Popen(COMMAND + [word] + paths, start_new_session=True)
