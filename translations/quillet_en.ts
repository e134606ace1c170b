<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>AnalysisTexts</name>
    <message>
        <source>Author</source>
        <translation>Author</translation>
    </message>
    <message>
        <source>Creator</source>
        <translation>Creator</translation>
    </message>
    <message>
        <source>Producer</source>
        <translation>Producer</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Keywords</translation>
    </message>
    <message numerus="yes">
        <source>%n attachment(s)</source>
        <translation>
            <numerusform>%n attachment</numerusform>
            <numerusform>%n attachments</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n form field(s)</source>
        <translation>
            <numerusform>%n form field</numerusform>
            <numerusform>%n form fields</numerusform>
        </translation>
    </message>
    <message>
        <source>JavaScript</source>
        <translation>JavaScript</translation>
    </message>
    <message numerus="yes">
        <source>%n link(s)</source>
        <translation>
            <numerusform>%n link</numerusform>
            <numerusform>%n links</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n signature(s)</source>
        <translation>
            <numerusform>%n signature</numerusform>
            <numerusform>%n signatures</numerusform>
        </translation>
    </message>
    <message>
        <source>Password protected</source>
        <translation>Password protected</translation>
    </message>
    <message>
        <source>Remove the password if you know it.</source>
        <translation>Remove the password if you know it.</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>Compress</translation>
    </message>
    <message>
        <source>%1 → ~%2 · images at %3 DPI on average</source>
        <translation>%1 → ~%2 · images at %3 DPI on average</translation>
    </message>
    <message>
        <source>Scanned document detected</source>
        <translation>Scanned document detected</translation>
    </message>
    <message>
        <source>Personal metadata found</source>
        <translation>Personal metadata found</translation>
    </message>
    <message>
        <source>Author, creator or dates are embedded. Clean before sharing.</source>
        <translation>Author, creator or dates are embedded. Clean before sharing.</translation>
    </message>
    <message>
        <source>Embedded content detected</source>
        <translation>Embedded content detected</translation>
    </message>
    <message>
        <source>Make searchable (OCR)</source>
        <translation>Make searchable (OCR)</translation>
    </message>
</context>
<context>
    <name>Operation</name>
    <message>
        <source>Compress</source>
        <translation>Compress</translation>
    </message>
    <message>
        <source>Target Size</source>
        <translation>Target Size</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Merge</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Split</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>Organize</translation>
    </message>
    <message>
        <source>PDF → Images</source>
        <translation>PDF → Images</translation>
    </message>
    <message>
        <source>Images → PDF</source>
        <translation>Images → PDF</translation>
    </message>
    <message>
        <source>Privacy Clean</source>
        <translation>Privacy Clean</translation>
    </message>
    <message>
        <source>Protect</source>
        <translation>Protect</translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation>Remove Password</translation>
    </message>
    <message>
        <source>Make Searchable</source>
        <translation>Make Searchable</translation>
    </message>
    <message>
        <source>Redact</source>
        <translation>Redact</translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation>Stamp</translation>
    </message>
</context>
<context>
    <name>PageSelection</name>
    <message>
        <source>Enter the pages, e.g. %1.</source>
        <translation>Enter the pages, e.g. %1.</translation>
    </message>
    <message>
        <source>“%1” is not a page or a range of pages, e.g. %2.</source>
        <translation>“%1” is not a page or a range of pages, e.g. %2.</translation>
    </message>
    <message numerus="yes">
        <source>The document has %n page(s): higher numbers mean the last page.</source>
        <translation>
            <numerusform>The document has %n page: higher numbers mean the last page.</numerusform>
            <numerusform>The document has %n pages: higher numbers mean the last page.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>TaskState</name>
    <message>
        <source>Queued</source>
        <translation>Queued</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Running</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Completed</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Cancelled</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Start for the session bus only: no window until one is asked for.</source>
        <translation>Start for the session bus only: no window until one is asked for.</translation>
    </message>
    <message>
        <source>Perform a file manager&apos;s action on the files: compress, merge, convert, clean, ocr or images.</source>
        <translation>Perform a file manager&apos;s action on the files: compress, merge, convert, clean, ocr or images.</translation>
    </message>
    <message>
        <source>Choose files, then act on them: compress, merge, convert, clean, ocr or images.</source>
        <translation>Choose files, then act on them: compress, merge, convert, clean, ocr or images.</translation>
    </message>
    <message>
        <source>quillet-app: unknown action &quot;%1&quot;; use compress, merge, convert, clean, ocr or images
</source>
        <translation>quillet-app: unknown action &quot;%1&quot;; use compress, merge, convert, clean, ocr or images
</translation>
    </message>
</context>
<context>
    <name>quillet::AnalysisService</name>
    <message numerus="yes">
        <source>the analysis took longer than %n minute(s)</source>
        <translation>
            <numerusform>the analysis took longer than %n minute</numerusform>
            <numerusform>the analysis took longer than %n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>unreadable analysis (%1)</source>
        <translation>unreadable analysis (%1)</translation>
    </message>
    <message>
        <source>the analysis stopped unexpectedly</source>
        <translation>the analysis stopped unexpectedly</translation>
    </message>
    <message>
        <source>the analysis program could not be started</source>
        <translation>the analysis program could not be started</translation>
    </message>
</context>
<context>
    <name>quillet::AppModel</name>
    <message>
        <source>Choose PDFs or images</source>
        <translation>Choose PDFs or images</translation>
    </message>
</context>
<context>
    <name>quillet::AutomationBus</name>
    <message>
        <source>Unknown error.</source>
        <translation>Unknown error.</translation>
    </message>
    <message>
        <source>Unknown quality &quot;%1&quot;; use highQuality, balanced, smallest or lossless.</source>
        <translation>Unknown quality &quot;%1&quot;; use highQuality, balanced, smallest or lossless.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an absolute path.</source>
        <translation>&quot;%1&quot; is not an absolute path.</translation>
    </message>
</context>
<context>
    <name>quillet::BatchView</name>
    <message>
        <source>Compress · Balanced</source>
        <translation>Compress · Balanced</translation>
    </message>
    <message>
        <source>Compress · Smallest</source>
        <translation>Compress · Smallest</translation>
    </message>
    <message>
        <source>Compress under 10 MB</source>
        <translation>Compress under 10 MB</translation>
    </message>
    <message>
        <source>Compress under 5 MB</source>
        <translation>Compress under 5 MB</translation>
    </message>
    <message>
        <source>Convert to PNG</source>
        <translation>Convert to PNG</translation>
    </message>
    <message>
        <source>Convert to JPEG</source>
        <translation>Convert to JPEG</translation>
    </message>
    <message>
        <source>Remove Metadata</source>
        <translation>Remove Metadata</translation>
    </message>
    <message>
        <source>Rotate 90°</source>
        <translation>Rotate 90°</translation>
    </message>
    <message>
        <source>Remove Password (known password)</source>
        <translation>Remove Password (known password)</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Action</translation>
    </message>
    <message>
        <source>Action:</source>
        <translation>Action:</translation>
    </message>
    <message>
        <source>Current password</source>
        <translation>Current password</translation>
    </message>
    <message>
        <source>Applied to every selected file — use when all files share the password</source>
        <translation>Applied to every selected file — use when all files share the password</translation>
    </message>
    <message>
        <source>Files of the batch</source>
        <translation>Files of the batch</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>State</source>
        <translation>State</translation>
    </message>
    <message>
        <source>Clear finished</source>
        <translation>Clear finished</translation>
    </message>
    <message numerus="yes">
        <source>%n done</source>
        <translation>
            <numerusform>%n done</numerusform>
            <numerusform>%n done</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Run on %n files</source>
        <translation>
            <numerusform>Run on %n file</numerusform>
            <numerusform>Run on %n files</numerusform>
        </translation>
    </message>
    <message>
        <source>Drop PDFs or a folder above.</source>
        <translation>Drop PDFs or a folder above.</translation>
    </message>
    <message>
        <source>Make searchable (OCR)</source>
        <translation>Make searchable (OCR)</translation>
    </message>
    <message>
        <source>Redact</source>
        <translation>Redact</translation>
    </message>
    <message>
        <source>Words to redact</source>
        <translation>Words to redact</translation>
    </message>
    <message>
        <source>Words, separated by commas</source>
        <translation>Words, separated by commas</translation>
    </message>
    <message>
        <source>Add page numbers</source>
        <translation>Add page numbers</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>Watermark</translation>
    </message>
    <message>
        <source>Watermark text</source>
        <translation>Watermark text</translation>
    </message>
    <message>
        <source>CONFIDENTIAL</source>
        <translation>CONFIDENTIAL</translation>
    </message>
</context>
<context>
    <name>quillet::BeforeAfterView</name>
    <message>
        <source>Previous page</source>
        <translation>Previous page</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Next page</translation>
    </message>
    <message>
        <source>Original page</source>
        <translation>Original page</translation>
    </message>
    <message>
        <source>Result page</source>
        <translation>Result page</translation>
    </message>
    <message>
        <source>Original: %1</source>
        <translation>Original: %1</translation>
    </message>
    <message>
        <source>Result: %1</source>
        <translation>Result: %1</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Page %1 of %2</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>Page %1</translation>
    </message>
    <message>
        <source>Drawing…</source>
        <translation>Drawing…</translation>
    </message>
</context>
<context>
    <name>quillet::CompressView</name>
    <message>
        <source>High Quality</source>
        <translation>High Quality</translation>
    </message>
    <message>
        <source>Images kept sharp for print; a modest saving.</source>
        <translation>Images kept sharp for print; a modest saving.</translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation>Balanced</translation>
    </message>
    <message>
        <source>Good on screen and in print at home; the usual choice.</source>
        <translation>Good on screen and in print at home; the usual choice.</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>Smallest</translation>
    </message>
    <message>
        <source>For e-mail and the web: images at screen resolution.</source>
        <translation>For e-mail and the web: images at screen resolution.</translation>
    </message>
    <message>
        <source>Lossless Optimize</source>
        <translation>Lossless Optimize</translation>
    </message>
    <message>
        <source>Nothing visible changes: only the file&apos;s structure is tightened.</source>
        <translation>Nothing visible changes: only the file&apos;s structure is tightened.</translation>
    </message>
    <message>
        <source>PDFs to compress</source>
        <translation>PDFs to compress</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>Predicted</source>
        <translation>Predicted</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>Before / After</source>
        <translation>Before / After</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>Compress</translation>
    </message>
    <message>
        <source>Under a size</source>
        <translation>Under a size</translation>
    </message>
    <message>
        <source>Target size</source>
        <translation>Target size</translation>
    </message>
    <message>
        <source>Unit of the target size</source>
        <translation>Unit of the target size</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>Presets</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Save as Preset…</source>
        <translation>Save as Preset…</translation>
    </message>
    <message>
        <source>Save as Preset</source>
        <translation>Save as Preset</translation>
    </message>
    <message>
        <source>Name of the preset:</source>
        <translation>Name of the preset:</translation>
    </message>
    <message>
        <source>Presets:</source>
        <translation>Presets:</translation>
    </message>
    <message>
        <source>at most %1</source>
        <translation>at most %1</translation>
    </message>
    <message>
        <source>Analysing…</source>
        <translation>Analysing…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>could not be read: %1</translation>
    </message>
    <message>
        <source>No presets yet</source>
        <translation>No presets yet</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) that are not PDFs will be left out.</source>
        <translation>
            <numerusform>%n file that is not a PDF will be left out.</numerusform>
            <numerusform>%n files that are not PDFs will be left out.</numerusform>
        </translation>
    </message>
    <message>
        <source>Load a PDF first: only PDFs can be compressed.</source>
        <translation>Load a PDF first: only PDFs can be compressed.</translation>
    </message>
</context>
<context>
    <name>quillet::ConvertView</name>
    <message>
        <source>Convert</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>Files to convert</source>
        <translation>Files to convert</translation>
    </message>
    <message>
        <source>All pages, or e.g. %1</source>
        <translation>All pages, or e.g. %1</translation>
    </message>
    <message>
        <source>lossless</source>
        <translation>lossless</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Resolution:</source>
        <translation>Resolution:</translation>
    </message>
    <message>
        <source>Pages:</source>
        <translation>Pages:</translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation>Quality:</translation>
    </message>
    <message>
        <source>The images of each PDF go into a folder beside it, named after it.</source>
        <translation>The images of each PDF go into a folder beside it, named after it.</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Resolution</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Quality</translation>
    </message>
    <message>
        <source>Size of each image</source>
        <translation>Size of each image</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>US Letter</source>
        <translation>US Letter</translation>
    </message>
    <message>
        <source>US Legal</source>
        <translation>US Legal</translation>
    </message>
    <message>
        <source>Fit: the whole image on the page</source>
        <translation>Fit: the whole image on the page</translation>
    </message>
    <message>
        <source>Fill: the page covered, edges cut</source>
        <translation>Fill: the page covered, edges cut</translation>
    </message>
    <message>
        <source> pt</source>
        <translation> pt</translation>
    </message>
    <message>
        <source>Page size:</source>
        <translation>Page size:</translation>
    </message>
    <message>
        <source>Placement:</source>
        <translation>Placement:</translation>
    </message>
    <message>
        <source>Margin:</source>
        <translation>Margin:</translation>
    </message>
    <message>
        <source>The images become the pages of one PDF, in the order they were loaded.</source>
        <translation>The images become the pages of one PDF, in the order they were loaded.</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>Page size</translation>
    </message>
    <message>
        <source>Placement</source>
        <translation>Placement</translation>
    </message>
    <message>
        <source>Margin</source>
        <translation>Margin</translation>
    </message>
    <message>
        <source>Load images to make a PDF of them.</source>
        <translation>Load images to make a PDF of them.</translation>
    </message>
    <message>
        <source>Load a PDF to turn its pages into images.</source>
        <translation>Load a PDF to turn its pages into images.</translation>
    </message>
    <message>
        <source>Drop PDFs or images above.</source>
        <translation>Drop PDFs or images above.</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) into one PDF.</source>
        <translation>
            <numerusform>%n image into one PDF.</numerusform>
            <numerusform>%n images into one PDF.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n PDF(s) into images.</source>
        <translation>
            <numerusform>%n PDF into images.</numerusform>
            <numerusform>%n PDFs into images.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n page(s) into images.</source>
        <translation>
            <numerusform>%n page into images.</numerusform>
            <numerusform>%n pages into images.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n other file(s) are left out.</source>
        <translation>
            <numerusform>%n other file is left out.</numerusform>
            <numerusform>%n other files are left out.</numerusform>
        </translation>
    </message>
    <message>
        <source>Converting: follow it in the queue.</source>
        <translation>Converting: follow it in the queue.</translation>
    </message>
</context>
<context>
    <name>quillet::DropZone</name>
    <message>
        <source>Choose files…</source>
        <translation>Choose files…</translation>
    </message>
    <message>
        <source>Choose a folder…</source>
        <translation>Choose a folder…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>quillet::EngineTexts</name>
    <message>
        <source>%1 of %2 pages made searchable</source>
        <translation>%1 of %2 pages made searchable</translation>
    </message>
    <message>
        <source>This PDF is already optimized.</source>
        <translation>This PDF is already optimized.</translation>
    </message>
    <message>
        <source>Already under target — optimized losslessly.</source>
        <translation>Already under target — optimized losslessly.</translation>
    </message>
    <message>
        <source>Already under %1.</source>
        <translation>Already under %1.</translation>
    </message>
    <message>
        <source>Best effort: %1 — this PDF cannot reach %2 without destroying quality.</source>
        <translation>Best effort: %1 — this PDF cannot reach %2 without destroying quality.</translation>
    </message>
    <message>
        <source>File not found: %1</source>
        <translation>File not found: %1</translation>
    </message>
    <message>
        <source>Could not open %1.</source>
        <translation>Could not open %1.</translation>
    </message>
    <message>
        <source>Could not open %1: %2.</source>
        <translation>Could not open %1: %2.</translation>
    </message>
    <message>
        <source>Writing the PDF failed: %1</source>
        <translation>Writing the PDF failed: %1</translation>
    </message>
    <message>
        <source>Could not safely process this PDF.</source>
        <translation>Could not safely process this PDF.</translation>
    </message>
    <message>
        <source>This PDF cannot be compressed under %1 without unacceptable quality loss.</source>
        <translation>This PDF cannot be compressed under %1 without unacceptable quality loss.</translation>
    </message>
    <message>
        <source>Incorrect password.</source>
        <translation>Incorrect password.</translation>
    </message>
    <message>
        <source>The document has no pages.</source>
        <translation>The document has no pages.</translation>
    </message>
    <message>
        <source>No input files.</source>
        <translation>No input files.</translation>
    </message>
    <message>
        <source>Unsupported image: %1</source>
        <translation>Unsupported image: %1</translation>
    </message>
    <message>
        <source>No pages matched &quot;%1&quot;.</source>
        <translation>No pages matched &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Set a maximum size per output file.</source>
        <translation>Set a maximum size per output file.</translation>
    </message>
    <message>
        <source>Enter an open password.</source>
        <translation>Enter an open password.</translation>
    </message>
    <message>
        <source>The file changed while it was being split.</source>
        <translation>The file changed while it was being split.</translation>
    </message>
    <message>
        <source>%1 is not processed: its streams expand to more than %2 MB when decoded.</source>
        <translation>%1 is not processed: its streams expand to more than %2 MB when decoded.</translation>
    </message>
    <message>
        <source>%1: Page %2 takes too long to draw</source>
        <translation>%1: Page %2 takes too long to draw</translation>
    </message>
    <message>
        <source>The operation was cancelled.</source>
        <translation>The operation was cancelled.</translation>
    </message>
    <message>
        <source>The job stopped unexpectedly: its worker process crashed.</source>
        <translation>The job stopped unexpectedly: its worker process crashed.</translation>
    </message>
    <message>
        <source>The job stopped unexpectedly: its worker process exited with status %1 without a result.</source>
        <translation>The job stopped unexpectedly: its worker process exited with status %1 without a result.</translation>
    </message>
    <message numerus="yes">
        <source>%n pages combined</source>
        <translation>
            <numerusform>%n page combined</numerusform>
            <numerusform>%n pages combined</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n images</source>
        <translation>
            <numerusform>%n image</numerusform>
            <numerusform>%n images</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n pages skipped</source>
        <translation>
            <numerusform>%n page skipped</numerusform>
            <numerusform>%n pages skipped</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::FileCard</name>
    <message>
        <source>Analysing…</source>
        <translation>Analysing…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>could not be read: %1</translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation>Remove Password</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>missing</translation>
    </message>
    <message>
        <source>%1 file · %2</source>
        <translation>%1 file · %2</translation>
    </message>
    <message numerus="yes">
        <source>%n page(s)</source>
        <translation>
            <numerusform>%n page</numerusform>
            <numerusform>%n pages</numerusform>
        </translation>
    </message>
    <message>
        <source>PDF %1</source>
        <translation>PDF %1</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s), %1 DPI on average</source>
        <translation>
            <numerusform>%n image, %1 DPI</numerusform>
            <numerusform>%n images, %1 DPI on average</numerusform>
        </translation>
    </message>
    <message>
        <source>no images</source>
        <translation>no images</translation>
    </message>
    <message numerus="yes">
        <source>%n scanned page(s)</source>
        <translation>
            <numerusform>%n scanned page</numerusform>
            <numerusform>%n scanned pages</numerusform>
        </translation>
    </message>
    <message>
        <source>text on %1% of pages</source>
        <translation>text on %1% of pages</translation>
    </message>
    <message numerus="yes">
        <source>%n font(s): %1</source>
        <translation>
            <numerusform>%n font: %1</numerusform>
            <numerusform>%n fonts: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Personal metadata: %1</source>
        <translation>Personal metadata: %1</translation>
    </message>
    <message>
        <source>%1 (coming soon)</source>
        <translation>%1 (coming soon)</translation>
    </message>
    <message>
        <source>Inspect</source>
        <translation>Inspect</translation>
    </message>
</context>
<context>
    <name>quillet::HistoryView</name>
    <message>
        <source>Finished jobs</source>
        <translation>Finished jobs</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Action</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Files</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Show in Folder</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Clear History…</source>
        <translation>Clear History…</translation>
    </message>
    <message>
        <source>Run Again</source>
        <translation>Run Again</translation>
    </message>
    <message>
        <source>No finished jobs yet.</source>
        <translation>No finished jobs yet.</translation>
    </message>
    <message>
        <source>Choose a job to open its result or run it again.</source>
        <translation>Choose a job to open its result or run it again.</translation>
    </message>
    <message>
        <source>This job&apos;s options were not kept, so it cannot be run again.</source>
        <translation>This job&apos;s options were not kept, so it cannot be run again.</translation>
    </message>
    <message>
        <source>The files of this job are no longer where they were.</source>
        <translation>The files of this job are no longer where they were.</translation>
    </message>
    <message numerus="yes">
        <source>Queued again without %n missing file(s).</source>
        <translation>
            <numerusform>Queued again without %n missing file.</numerusform>
            <numerusform>Queued again without %n missing files.</numerusform>
        </translation>
    </message>
    <message>
        <source>Queued again: follow it in the queue.</source>
        <translation>Queued again: follow it in the queue.</translation>
    </message>
    <message>
        <source>%1 is no longer there.</source>
        <translation>%1 is no longer there.</translation>
    </message>
    <message>
        <source>The results of this job are no longer there.</source>
        <translation>The results of this job are no longer there.</translation>
    </message>
    <message>
        <source>Clear History</source>
        <translation>Clear History</translation>
    </message>
    <message numerus="yes">
        <source>Remove all %n finished job(s) from the history?</source>
        <translation>
            <numerusform>Remove the %n finished job from the history?</numerusform>
            <numerusform>Remove all %n finished jobs from the history?</numerusform>
        </translation>
    </message>
    <message>
        <source>The files the jobs made stay where they are.</source>
        <translation>The files the jobs made stay where they are.</translation>
    </message>
</context>
<context>
    <name>quillet::HomeView</name>
    <message>
        <source>Drop PDFs above to see what is inside them and what would make them better.</source>
        <translation>Drop PDFs above to see what is inside them and what would make them better.</translation>
    </message>
    <message numerus="yes">
        <source>%n more file(s) loaded without a card. Batch works on every file.</source>
        <translation>
            <numerusform>%n more file loaded without a card. Batch works on every file.</numerusform>
            <numerusform>%n more files loaded without a card. Batch works on every file.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::InspectorSheet</name>
    <message>
        <source>yes</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>no</source>
        <translation>no</translation>
    </message>
    <message>
        <source>Inspect %1</source>
        <translation>Inspect %1</translation>
    </message>
    <message>
        <source>Overview</source>
        <translation>Overview</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation>Fonts</translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation>Metadata</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Security</translation>
    </message>
    <message>
        <source>Compression</source>
        <translation>Compression</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>PDF version</source>
        <translation>PDF version</translation>
    </message>
    <message>
        <source>Encrypted</source>
        <translation>Encrypted</translation>
    </message>
    <message>
        <source>Average image DPI</source>
        <translation>Average image DPI</translation>
    </message>
    <message>
        <source>Scanned pages</source>
        <translation>Scanned pages</translation>
    </message>
    <message>
        <source>Pages with text</source>
        <translation>Pages with text</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>Page size</translation>
    </message>
    <message>
        <source>Pages not analysed</source>
        <translation>Pages not analysed</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 and %n more</numerusform>
            <numerusform>%1 and %n more</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>yes (%n operator(s))</source>
        <translation>
            <numerusform>yes (%n operator)</numerusform>
            <numerusform>yes (%n operators)</numerusform>
        </translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Page</translation>
    </message>
    <message>
        <source>Effective DPI</source>
        <translation>Effective DPI</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation>JPEG</translation>
    </message>
    <message>
        <source>monochrome</source>
        <translation>monochrome</translation>
    </message>
    <message>
        <source>other</source>
        <translation>other</translation>
    </message>
    <message>
        <source>No images.</source>
        <translation>No images.</translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation>Pixels</translation>
    </message>
    <message>
        <source>DPI</source>
        <translation>DPI</translation>
    </message>
    <message>
        <source>Estimated bytes</source>
        <translation>Estimated bytes</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>No fonts.</source>
        <translation>No fonts.</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>Font</translation>
    </message>
    <message>
        <source>First page</source>
        <translation>First page</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>Author</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>Subject</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Keywords</translation>
    </message>
    <message>
        <source>Creator</source>
        <translation>Creator</translation>
    </message>
    <message>
        <source>Producer</source>
        <translation>Producer</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Created</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>Attachments</source>
        <translation>Attachments</translation>
    </message>
    <message>
        <source>Form fields</source>
        <translation>Form fields</translation>
    </message>
    <message>
        <source>JavaScript</source>
        <translation>JavaScript</translation>
    </message>
    <message>
        <source>External links</source>
        <translation>External links</translation>
    </message>
    <message>
        <source>Annotations</source>
        <translation>Annotations</translation>
    </message>
    <message>
        <source>Signatures</source>
        <translation>Signatures</translation>
    </message>
    <message>
        <source>High Quality</source>
        <translation>High Quality</translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation>Balanced</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>Smallest</translation>
    </message>
    <message>
        <source>Lossless Optimize</source>
        <translation>Lossless Optimize</translation>
    </message>
    <message>
        <source>Tier</source>
        <translation>Tier</translation>
    </message>
    <message>
        <source>Predicted size</source>
        <translation>Predicted size</translation>
    </message>
    <message>
        <source>Predictions come from the images found; the result of a real run may differ.</source>
        <translation>Predictions come from the images found; the result of a real run may differ.</translation>
    </message>
</context>
<context>
    <name>quillet::IntentRunner</name>
    <message>
        <source>The action was stopped before it finished.</source>
        <translation>The action was stopped before it finished.</translation>
    </message>
</context>
<context>
    <name>quillet::LoadedFilesModel</name>
    <message>
        <source>Analysing…</source>
        <translation>Analysing…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>could not be read: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n page(s)</source>
        <translation>
            <numerusform>%n page</numerusform>
            <numerusform>%n pages</numerusform>
        </translation>
    </message>
    <message>
        <source>PDF %1</source>
        <translation>PDF %1</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s), %1 DPI on average</source>
        <translation>
            <numerusform>%n image, %1 DPI</numerusform>
            <numerusform>%n images, %1 DPI on average</numerusform>
        </translation>
    </message>
    <message>
        <source>missing</source>
        <translation>missing</translation>
    </message>
    <message>
        <source>%1 file · %2</source>
        <translation>%1 file · %2</translation>
    </message>
</context>
<context>
    <name>quillet::MainWindow</name>
    <message>
        <source>PDFs and images</source>
        <translation>PDFs and images</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>Open PDFs or images</source>
        <translation>Open PDFs or images</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>Show Quillet</source>
        <translation>Show Quillet</translation>
    </message>
    <message>
        <source>Quillet is finishing your jobs</source>
        <translation>Quillet is finishing your jobs</translation>
    </message>
    <message>
        <source>Your jobs go on in the background. Quillet quits when they are done.</source>
        <translation>Your jobs go on in the background. Quillet quits when they are done.</translation>
    </message>
    <message>
        <source>A job is still running. Quitting stops it; jobs that wait are offered again at the next start.</source>
        <translation>A job is still running. Quitting stops it; jobs that wait are offered again at the next start.</translation>
    </message>
    <message>
        <source>Choose PDFs or images</source>
        <translation>Choose PDFs or images</translation>
    </message>
</context>
<context>
    <name>quillet::MergeView</name>
    <message>
        <source>Files to merge, in order</source>
        <translation>Files to merge, in order</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Move Up</translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation>Alt+Up</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Move Down</translation>
    </message>
    <message>
        <source>Alt+Down</source>
        <translation>Alt+Down</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Insert a blank page between files</source>
        <translation>Insert a blank page between files</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Merge</translation>
    </message>
    <message>
        <source>Drop PDFs and images above; each drop adds to the end of the list.</source>
        <translation>Drop PDFs and images above; each drop adds to the end of the list.</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s)</source>
        <translation>
            <numerusform>%n file</numerusform>
            <numerusform>%n files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n page(s) in all</source>
        <translation>
            <numerusform>%n page in all</numerusform>
            <numerusform>%n pages in all</numerusform>
        </translation>
    </message>
    <message>
        <source>add another file to merge</source>
        <translation>add another file to merge</translation>
    </message>
    <message>
        <source>%1 cannot be read (%2): remove it before merging.</source>
        <translation>%1 cannot be read (%2): remove it before merging.</translation>
    </message>
    <message>
        <source>Add at least two files to merge.</source>
        <translation>Add at least two files to merge.</translation>
    </message>
    <message numerus="yes">
        <source>Merging %n file(s): follow it in the queue.</source>
        <translation>
            <numerusform>Merging %n file: follow it in the queue.</numerusform>
            <numerusform>Merging %n files: follow it in the queue.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::OrganizeController</name>
    <message>
        <source>“%1” could not be found.</source>
        <translation>“%1” could not be found.</translation>
    </message>
    <message>
        <source>“%1” could not be opened as a PDF.</source>
        <translation>“%1” could not be opened as a PDF.</translation>
    </message>
    <message>
        <source>“%1” is locked with a password. Remove the password in Privacy, then organize the unlocked copy.</source>
        <translation>“%1” is locked with a password. Remove the password in Privacy, then organize the unlocked copy.</translation>
    </message>
    <message>
        <source>“%1” could not be read: %2</source>
        <translation>“%1” could not be read: %2</translation>
    </message>
    <message>
        <source>“%1” could not be written. Check that its folder exists and that you may write there.</source>
        <translation>“%1” could not be written. Check that its folder exists and that you may write there.</translation>
    </message>
    <message>
        <source>Nothing to write for “%1”: no page is left or selected.</source>
        <translation>Nothing to write for “%1”: no page is left or selected.</translation>
    </message>
</context>
<context>
    <name>quillet::OrganizePageModel</name>
    <message>
        <source>Page %1</source>
        <translation>Page %1</translation>
    </message>
</context>
<context>
    <name>quillet::OrganizeView</name>
    <message>
        <source>Drop a PDF to organize pages</source>
        <translation>Drop a PDF to organize pages</translation>
    </message>
    <message>
        <source>Rotate selection 90° left</source>
        <translation>Rotate selection 90° left</translation>
    </message>
    <message>
        <source>Rotate Left</source>
        <translation>Rotate Left</translation>
    </message>
    <message>
        <source>Rotate selection 90° right</source>
        <translation>Rotate selection 90° right</translation>
    </message>
    <message>
        <source>Rotate Right</source>
        <translation>Rotate Right</translation>
    </message>
    <message>
        <source>Duplicate selected pages</source>
        <translation>Duplicate selected pages</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplicate</translation>
    </message>
    <message>
        <source>Delete selected pages</source>
        <translation>Delete selected pages</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Insert pages from PDFs</source>
        <translation>Insert pages from PDFs</translation>
    </message>
    <message>
        <source>Insert…</source>
        <translation>Insert…</translation>
    </message>
    <message>
        <source>Extract selected pages to a new PDF</source>
        <translation>Extract selected pages to a new PDF</translation>
    </message>
    <message>
        <source>Extract…</source>
        <translation>Extract…</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Save the organized PDF</source>
        <translation>Save the organized PDF</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Select all pages</source>
        <translation>Select all pages</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Select All</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Saved: %1</translation>
    </message>
    <message>
        <source>Extracted: %1</source>
        <translation>Extracted: %1</translation>
    </message>
    <message>
        <source>Thumbnail size</source>
        <translation>Thumbnail size</translation>
    </message>
    <message>
        <source>Opening “%1”…</source>
        <translation>Opening “%1”…</translation>
    </message>
    <message numerus="yes">
        <source>%n page(s)</source>
        <translation>
            <numerusform>%n page</numerusform>
            <numerusform>%n pages</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>%n selected</numerusform>
            <numerusform>%n selected</numerusform>
        </translation>
    </message>
    <message>
        <source>Insert pages from PDFs (appended at the end)</source>
        <translation>Insert pages from PDFs (appended at the end)</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf *.PDF)</source>
        <translation>PDF documents (*.pdf *.PDF)</translation>
    </message>
    <message>
        <source>Extract Selected Pages</source>
        <translation>Extract Selected Pages</translation>
    </message>
    <message>
        <source>This PDF may contain digital signatures</source>
        <translation>This PDF may contain digital signatures</translation>
    </message>
    <message>
        <source>Flattening or reorganizing signed documents can invalidate their signatures. Continue?</source>
        <translation>Flattening or reorganizing signed documents can invalidate their signatures. Continue?</translation>
    </message>
    <message>
        <source>Save Anyway</source>
        <translation>Save Anyway</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>Organize</translation>
    </message>
    <message>
        <source>Discard the changes to “%1”?</source>
        <translation>Discard the changes to “%1”?</translation>
    </message>
    <message>
        <source>“%1” was loaded. Opening it here replaces the pages you changed and did not save.</source>
        <translation>“%1” was loaded. Opening it here replaces the pages you changed and did not save.</translation>
    </message>
    <message>
        <source>Discard Changes</source>
        <translation>Discard Changes</translation>
    </message>
    <message>
        <source>Keep Editing</source>
        <translation>Keep Editing</translation>
    </message>
</context>
<context>
    <name>quillet::PageRenderService</name>
    <message>
        <source>This page takes too long to draw</source>
        <translation>This page takes too long to draw</translation>
    </message>
</context>
<context>
    <name>quillet::PrivacyView</name>
    <message>
        <source>Safe</source>
        <translation>Safe</translation>
    </message>
    <message>
        <source>Removes the document&apos;s details (title, author, subject, keywords, software, dates) and its XMP metadata. Pages, links and annotations stay; bookmarks, forms, scripts and attachments are not kept.</source>
        <translation>Removes the document&apos;s details (title, author, subject, keywords, software, dates) and its XMP metadata. Pages, links and annotations stay; bookmarks, forms, scripts and attachments are not kept.</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Privacy</translation>
    </message>
    <message>
        <source>Removes every trace of who made the file and with what: document details, XMP metadata on pages, images and fonts, editing data, thumbnails, scripts and attachments. The file gets a new ID.</source>
        <translation>Removes every trace of who made the file and with what: document details, XMP metadata on pages, images and fonts, editing data, thumbnails, scripts and attachments. The file gets a new ID.</translation>
    </message>
    <message>
        <source>Flatten &amp; Clean</source>
        <translation>Flatten &amp; Clean</translation>
    </message>
    <message>
        <source>Keeps only what a reader sees: annotations and filled-in form fields are burnt into the pages, then everything interactive and all metadata go.</source>
        <translation>Keeps only what a reader sees: annotations and filled-in form fields are burnt into the pages, then everything interactive and all metadata go.</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>Author</translation>
    </message>
    <message>
        <source>Creator</source>
        <translation>Creator</translation>
    </message>
    <message>
        <source>Producer</source>
        <translation>Producer</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>Keywords</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Created</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>Clean</source>
        <translation>Clean</translation>
    </message>
    <message>
        <source>Remove Metadata</source>
        <translation>Remove Metadata</translation>
    </message>
    <message>
        <source>Add Password</source>
        <translation>Add Password</translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation>Remove Password</translation>
    </message>
    <message>
        <source>Personal details found in the files</source>
        <translation>Personal details found in the files</translation>
    </message>
    <message>
        <source>Found in the files</source>
        <translation>Found in the files</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>Open password</source>
        <translation>Open password</translation>
    </message>
    <message>
        <source>Repeat the open password</source>
        <translation>Repeat the open password</translation>
    </message>
    <message>
        <source>Owner password (optional)</source>
        <translation>Owner password (optional)</translation>
    </message>
    <message>
        <source>Open password:</source>
        <translation>Open password:</translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation>Repeat:</translation>
    </message>
    <message>
        <source>Owner password:</source>
        <translation>Owner password:</translation>
    </message>
    <message>
        <source>The file is encrypted with AES-256; it opens only with the open password. Without an owner password, the open password is used for both.</source>
        <translation>The file is encrypted with AES-256; it opens only with the open password. Without an owner password, the open password is used for both.</translation>
    </message>
    <message>
        <source>Current password</source>
        <translation>Current password</translation>
    </message>
    <message>
        <source>Current password:</source>
        <translation>Current password:</translation>
    </message>
    <message>
        <source>Writes a copy that opens without a password; the document details are kept.</source>
        <translation>Writes a copy that opens without a password; the document details are kept.</translation>
    </message>
    <message>
        <source>nothing personal found</source>
        <translation>nothing personal found</translation>
    </message>
    <message numerus="yes">
        <source>%n detail(s)</source>
        <translation>
            <numerusform>%n detail</numerusform>
            <numerusform>%n details</numerusform>
        </translation>
    </message>
    <message>
        <source>Analysing…</source>
        <translation>Analysing…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>could not be read: %1</translation>
    </message>
    <message>
        <source>Drop PDFs above first.</source>
        <translation>Drop PDFs above first.</translation>
    </message>
    <message>
        <source>Enter an open password.</source>
        <translation>Enter an open password.</translation>
    </message>
    <message>
        <source>The two passwords do not match.</source>
        <translation>The two passwords do not match.</translation>
    </message>
    <message>
        <source>Enter the current password.</source>
        <translation>Enter the current password.</translation>
    </message>
    <message>
        <source>Protect</source>
        <translation>Protect</translation>
    </message>
    <message>
        <source>Drop PDFs above.</source>
        <translation>Drop PDFs above.</translation>
    </message>
    <message numerus="yes">
        <source>%n PDF(s) loaded.</source>
        <translation>
            <numerusform>%n PDF loaded.</numerusform>
            <numerusform>%n PDFs loaded.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n other file(s) are left out.</source>
        <translation>
            <numerusform>%n other file is left out.</numerusform>
            <numerusform>%n other files are left out.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n PDF(s) queued: follow them in the queue.</source>
        <translation>
            <numerusform>%n PDF queued: follow it in the queue.</numerusform>
            <numerusform>%n PDFs queued: follow them in the queue.</numerusform>
        </translation>
    </message>
    <message>
        <source>Make Searchable</source>
        <translation>Make Searchable</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>Chinese (Simplified)</source>
        <translation>Chinese (Simplified)</translation>
    </message>
    <message>
        <source>Languages:</source>
        <translation>Languages:</translation>
    </message>
    <message>
        <source>Pages without text get an invisible layer of the words read on them, so they can be selected, copied and searched. Nothing else changes: images are not re-encoded, and pages that already have text are left as they are.</source>
        <translation>Pages without text get an invisible layer of the words read on them, so they can be selected, copied and searched. Nothing else changes: images are not re-encoded, and pages that already have text are left as they are.</translation>
    </message>
    <message>
        <source>%1 is not a PDF: only PDFs can be cleaned, protected or made searchable.</source>
        <translation>%1 is not a PDF: only PDFs can be cleaned, protected or made searchable.</translation>
    </message>
    <message>
        <source>Tick at least one language.</source>
        <translation>Tick at least one language.</translation>
    </message>
    <message>
        <source>Redact</source>
        <translation>Redact</translation>
    </message>
</context>
<context>
    <name>quillet::QueuePanel</name>
    <message>
        <source>No jobs yet. What you run appears here.</source>
        <translation>No jobs yet. What you run appears here.</translation>
    </message>
    <message>
        <source>Clear finished</source>
        <translation>Clear finished</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>Queue</translation>
    </message>
    <message numerus="yes">
        <source>%n done</source>
        <translation>
            <numerusform>%n done</numerusform>
            <numerusform>%n done</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::QueueRowDelegate</name>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Show in Folder</translation>
    </message>
</context>
<context>
    <name>quillet::RedactPageView</name>
    <message>
        <source>Page to redact</source>
        <translation>Page to redact</translation>
    </message>
    <message>
        <source>Drag to draw a box over what to remove. Delete removes the selected box; Ctrl+Z undoes.</source>
        <translation>Drag to draw a box over what to remove. Delete removes the selected box; Ctrl+Z undoes.</translation>
    </message>
    <message>
        <source>Drop a PDF above to draw boxes on its pages.</source>
        <translation>Drop a PDF above to draw boxes on its pages.</translation>
    </message>
</context>
<context>
    <name>quillet::RedactPanel</name>
    <message>
        <source>Previous</source>
        <translation>Previous</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Remove boxes</source>
        <translation>Remove boxes</translation>
    </message>
    <message>
        <source>Words or an expression to remove</source>
        <translation>Words or an expression to remove</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>Match case</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>Regular expression</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>Matches to redact</source>
        <translation>Matches to redact</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Page</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Found by</source>
        <translation>Found by</translation>
    </message>
    <message>
        <source>No PDF loaded.</source>
        <translation>No PDF loaded.</translation>
    </message>
    <message>
        <source>Boxes are drawn on %1.</source>
        <translation>Boxes are drawn on %1.</translation>
    </message>
    <message>
        <source>Reading the pages…</source>
        <translation>Reading the pages…</translation>
    </message>
    <message>
        <source>This PDF cannot be shown.</source>
        <translation>This PDF cannot be shown.</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Page %1 of %2</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>Searching…</translation>
    </message>
    <message>
        <source>Nothing found.</source>
        <translation>Nothing found.</translation>
    </message>
    <message>
        <source>Draw a box on the page, or search for words or a preset.</source>
        <translation>Draw a box on the page, or search for words or a preset.</translation>
    </message>
    <message numerus="yes">
        <source>%n match(es): untick one to keep it.</source>
        <translation>
            <numerusform>%n match: untick it to keep it.</numerusform>
            <numerusform>%n matches: untick one to keep it.</numerusform>
        </translation>
    </message>
    <message>
        <source>Before and after</source>
        <translation>Before and after</translation>
    </message>
    <message>
        <source>Type the words again: the history does not keep them.</source>
        <translation>Type the words again: the history does not keep them.</translation>
    </message>
</context>
<context>
    <name>quillet::ResumeBanner</name>
    <message>
        <source>Previous batch was interrupted</source>
        <translation>Previous batch was interrupted</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Resume</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Discard</translation>
    </message>
    <message numerus="yes">
        <source>Task interrupted. Resume %n pending job(s)?</source>
        <translation>
            <numerusform>Task interrupted. Resume %n pending job?</numerusform>
            <numerusform>Task interrupted. Resume %n pending job(s)?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::SectionView</name>
    <message>
        <source>See what is inside a PDF and what would make it better.</source>
        <translation>See what is inside a PDF and what would make it better.</translation>
    </message>
    <message>
        <source>Drop PDFs or images here</source>
        <translation>Drop PDFs or images here</translation>
    </message>
    <message>
        <source>Nothing leaves this computer.</source>
        <translation>Nothing leaves this computer.</translation>
    </message>
    <message>
        <source>Make PDFs smaller: three quality tiers, a lossless optimisation, or a target size.</source>
        <translation>Make PDFs smaller: three quality tiers, a lossless optimisation, or a target size.</translation>
    </message>
    <message>
        <source>Drop PDFs to compress</source>
        <translation>Drop PDFs to compress</translation>
    </message>
    <message>
        <source>Combine PDFs and images into one PDF, in the order you choose. Each drop adds to the list.</source>
        <translation>Combine PDFs and images into one PDF, in the order you choose. Each drop adds to the list.</translation>
    </message>
    <message>
        <source>Drop PDFs and images to merge</source>
        <translation>Drop PDFs and images to merge</translation>
    </message>
    <message>
        <source>Split a PDF into parts: every page, page ranges, every N pages, extracted pages or parts of a size.</source>
        <translation>Split a PDF into parts: every page, page ranges, every N pages, extracted pages or parts of a size.</translation>
    </message>
    <message>
        <source>Drop a PDF to split</source>
        <translation>Drop a PDF to split</translation>
    </message>
    <message>
        <source>Reorder, rotate, delete, duplicate, extract and insert pages.</source>
        <translation>Reorder, rotate, delete, duplicate, extract and insert pages.</translation>
    </message>
    <message>
        <source>Drop a PDF to organize pages</source>
        <translation>Drop a PDF to organize pages</translation>
    </message>
    <message>
        <source>Turn PDF pages into PNG, JPEG, TIFF or HEIC images, or images into a PDF.</source>
        <translation>Turn PDF pages into PNG, JPEG, TIFF or HEIC images, or images into a PDF.</translation>
    </message>
    <message>
        <source>Drop PDFs or images to convert</source>
        <translation>Drop PDFs or images to convert</translation>
    </message>
    <message>
        <source>Drop PDFs to clean or protect</source>
        <translation>Drop PDFs to clean or protect</translation>
    </message>
    <message>
        <source>One action on many files at once.</source>
        <translation>One action on many files at once.</translation>
    </message>
    <message>
        <source>Drop PDFs or folders for batch processing</source>
        <translation>Drop PDFs or folders for batch processing</translation>
    </message>
    <message>
        <source>100 PDFs → pick an action → done. Folder structure is preserved.</source>
        <translation>100 PDFs → pick an action → done. Folder structure is preserved.</translation>
    </message>
    <message>
        <source>Finished jobs, newest first. Only what was done is kept, never the documents themselves.</source>
        <translation>Finished jobs, newest first. Only what was done is kept, never the documents themselves.</translation>
    </message>
    <message>
        <source>Drop files to load them</source>
        <translation>Drop files to load them</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>Compress</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Merge</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Split</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>Organize</translation>
    </message>
    <message>
        <source>Convert</source>
        <translation>Convert</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Privacy</translation>
    </message>
    <message>
        <source>Batch</source>
        <translation>Batch</translation>
    </message>
    <message>
        <source>History</source>
        <translation>History</translation>
    </message>
    <message>
        <source>Choose a folder of PDFs</source>
        <translation>Choose a folder of PDFs</translation>
    </message>
    <message>
        <source>Remove metadata, protect or unprotect with a password, and make scans searchable.</source>
        <translation>Remove metadata, protect or unprotect with a password, and make scans searchable.</translation>
    </message>
    <message numerus="yes">
        <source>Reading the folder… %n file(s) found</source>
        <translation>
            <numerusform>Reading the folder… %n file found</numerusform>
            <numerusform>Reading the folder… %n files found</numerusform>
        </translation>
    </message>
    <message>
        <source>Add page numbers, Bates numbers, headers, footers and watermarks as real text or pictures.</source>
        <translation>Add page numbers, Bates numbers, headers, footers and watermarks as real text or pictures.</translation>
    </message>
    <message>
        <source>Drop PDFs to stamp</source>
        <translation>Drop PDFs to stamp</translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation>Stamp</translation>
    </message>
</context>
<context>
    <name>quillet::SettingsWindow</name>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Appearance</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>Colours:</source>
        <translation>Colours:</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Output</translation>
    </message>
    <message>
        <source>Same folder as the original</source>
        <translation>Same folder as the original</translation>
    </message>
    <message>
        <source>A subfolder next to the original</source>
        <translation>A subfolder next to the original</translation>
    </message>
    <message>
        <source>A folder of my choice</source>
        <translation>A folder of my choice</translation>
    </message>
    <message>
        <source>No folder chosen</source>
        <translation>No folder chosen</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Choose…</translation>
    </message>
    <message>
        <source>Replace the original file</source>
        <translation>Replace the original file</translation>
    </message>
    <message>
        <source>The original is overwritten by the result and cannot be brought back. Keep a copy of anything you cannot afford to lose.</source>
        <translation>The original is overwritten by the result and cannot be brought back. Keep a copy of anything you cannot afford to lose.</translation>
    </message>
    <message>
        <source>Choose the folder for results</source>
        <translation>Choose the folder for results</translation>
    </message>
    <message>
        <source>Save results in:</source>
        <translation>Save results in:</translation>
    </message>
    <message>
        <source>Subfolder name:</source>
        <translation>Subfolder name:</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Folder:</translation>
    </message>
    <message>
        <source>{name} the original name · {action} what was done (compressed, merged, …) · {date} date and time · {part} the part number of a split · {size} the word “sized”</source>
        <translation>{name} the original name · {action} what was done (compressed, merged, …) · {date} date and time · {part} the part number of a split · {size} the word “sized”</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>File name:</translation>
    </message>
    <message>
        <source>Example: report.pdf compressed becomes %1</source>
        <translation>Example: report.pdf compressed becomes %1</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>Restart required — the new language takes effect after relaunching quillet.</source>
        <translation>Restart required — the new language takes effect after relaunching quillet.</translation>
    </message>
    <message>
        <source>Relaunch</source>
        <translation>Relaunch</translation>
    </message>
    <message>
        <source>A job is still running. Relaunching stops it; jobs that wait are offered again after the relaunch.</source>
        <translation>A job is still running. Relaunching stops it; jobs that wait are offered again after the relaunch.</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Language:</translation>
    </message>
    <message>
        <source>History</source>
        <translation>History</translation>
    </message>
    <message>
        <source>Clear history</source>
        <translation>Clear history</translation>
    </message>
    <message>
        <source>Remove every finished job from the history? Your files are not touched.</source>
        <translation>Remove every finished job from the history? Your files are not touched.</translation>
    </message>
    <message>
        <source>The history keeps what was done to which file and the sizes, never the documents themselves.</source>
        <translation>The history keeps what was done to which file and the sizes, never the documents themselves.</translation>
    </message>
    <message numerus="yes">
        <source>%n finished job(s) in the history</source>
        <translation>
            <numerusform>%n finished job in the history</numerusform>
            <numerusform>%n finished jobs in the history</numerusform>
        </translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistics</translation>
    </message>
    <message>
        <source>Share anonymous usage statistics</source>
        <translation>Share anonymous usage statistics</translation>
    </message>
    <message>
        <source>Quillet sends nothing anywhere, whatever this switch says: no statistics, no documents, no file names. Your choice is only remembered.</source>
        <translation>Quillet sends nothing anywhere, whatever this switch says: no statistics, no documents, no file names. Your choice is only remembered.</translation>
    </message>
    <message>
        <source>Drawing pages</source>
        <translation>Drawing pages</translation>
    </message>
    <message>
        <source> s</source>
        <translation> s</translation>
    </message>
    <message>
        <source>No limit</source>
        <translation>No limit</translation>
    </message>
    <message>
        <source>Time limit per page:</source>
        <translation>Time limit per page:</translation>
    </message>
    <message>
        <source>A page still drawing after this time is skipped when pages become images, and its preview shows why. Some damaged or hostile files draw for hours.</source>
        <translation>A page still drawing after this time is skipped when pages become images, and its preview shows why. Some damaged or hostile files draw for hours.</translation>
    </message>
</context>
<context>
    <name>quillet::SplitView</name>
    <message>
        <source>Split</source>
        <translation>Split</translation>
    </message>
    <message>
        <source>Page ranges</source>
        <translation>Page ranges</translation>
    </message>
    <message>
        <source>Pages per file</source>
        <translation>Pages per file</translation>
    </message>
    <message>
        <source>Pages to extract</source>
        <translation>Pages to extract</translation>
    </message>
    <message>
        <source>Largest size of a file</source>
        <translation>Largest size of a file</translation>
    </message>
    <message>
        <source>Unit of the size</source>
        <translation>Unit of the size</translation>
    </message>
    <message>
        <source>Every page</source>
        <translation>Every page</translation>
    </message>
    <message>
        <source>Each page becomes a PDF of its own.</source>
        <translation>Each page becomes a PDF of its own.</translation>
    </message>
    <message>
        <source>Each range becomes a PDF, in the order written.</source>
        <translation>Each range becomes a PDF, in the order written.</translation>
    </message>
    <message>
        <source>Every N pages</source>
        <translation>Every N pages</translation>
    </message>
    <message>
        <source>Runs of N pages; the last PDF holds the rest.</source>
        <translation>Runs of N pages; the last PDF holds the rest.</translation>
    </message>
    <message>
        <source>Extract pages</source>
        <translation>Extract pages</translation>
    </message>
    <message>
        <source>The chosen pages, in page order, in one PDF.</source>
        <translation>The chosen pages, in page order, in one PDF.</translation>
    </message>
    <message>
        <source>By file size</source>
        <translation>By file size</translation>
    </message>
    <message>
        <source>Consecutive pages, each PDF kept under the size.</source>
        <translation>Consecutive pages, each PDF kept under the size.</translation>
    </message>
    <message>
        <source>%1 is not a PDF: only PDFs can be split.</source>
        <translation>%1 is not a PDF: only PDFs can be split.</translation>
    </message>
    <message>
        <source>No PDF loaded.</source>
        <translation>No PDF loaded.</translation>
    </message>
    <message numerus="yes">
        <source>%1 — %n page(s)</source>
        <translation>
            <numerusform>%1 — %n page</numerusform>
            <numerusform>%1 — %n pages</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 — could not be read: %2</source>
        <translation>%1 — could not be read: %2</translation>
    </message>
    <message>
        <source>%1 — counting pages…</source>
        <translation>%1 — counting pages…</translation>
    </message>
    <message>
        <source>Drop a PDF above to split it.</source>
        <translation>Drop a PDF above to split it.</translation>
    </message>
    <message>
        <source>Each PDF stays under %1; how many there are depends on the pages.</source>
        <translation>Each PDF stays under %1; how many there are depends on the pages.</translation>
    </message>
    <message numerus="yes">
        <source>Makes one PDF of %n page(s).</source>
        <translation>
            <numerusform>Makes one PDF of %n page.</numerusform>
            <numerusform>Makes one PDF of %n pages.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Makes %n PDF(s).</source>
        <translation>
            <numerusform>Makes %n PDF.</numerusform>
            <numerusform>Makes %n PDFs.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Only %1 is split; %n other file(s) are left out.</source>
        <translation>
            <numerusform>Only %1 is split; %n other file is left out.</numerusform>
            <numerusform>Only %1 is split; %n other files are left out.</numerusform>
        </translation>
    </message>
    <message>
        <source>Splitting %1: follow it in the queue.</source>
        <translation>Splitting %1: follow it in the queue.</translation>
    </message>
</context>
<context>
    <name>quillet::StampView</name>
    <message>
        <source>Bates number</source>
        <translation>Bates number</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Picture</translation>
    </message>
    <message>
        <source>Page number</source>
        <translation>Page number</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>CONFIDENTIAL</source>
        <translation>CONFIDENTIAL</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>Marks</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Up</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Down</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Previous</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation>Stamp</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Page %1 of %2</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>{n} is the number, {total} the last one.</source>
        <translation>{n} is the number, {total} the last one.</translation>
    </message>
    <message>
        <source>Prefix</source>
        <translation>Prefix</translation>
    </message>
    <message>
        <source>Digits</source>
        <translation>Digits</translation>
    </message>
    <message>
        <source>Suffix</source>
        <translation>Suffix</translation>
    </message>
    <message>
        <source>Numbers run on from one file to the next, in the order loaded.</source>
        <translation>Numbers run on from one file to the next, in the order loaded.</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Choose…</translation>
    </message>
    <message>
        <source>Choose a picture</source>
        <translation>Choose a picture</translation>
    </message>
    <message>
        <source>Pictures (*.png *.jpg *.jpeg)</source>
        <translation>Pictures (*.png *.jpg *.jpeg)</translation>
    </message>
    <message>
        <source> pt</source>
        <translation> pt</translation>
    </message>
    <message>
        <source>PNG or JPEG</source>
        <translation>PNG or JPEG</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Width</translation>
    </message>
    <message>
        <source>Pick…</source>
        <translation>Pick…</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>Colour</translation>
    </message>
    <message>
        <source>Over the page</source>
        <translation>Over the page</translation>
    </message>
    <message>
        <source>Under the page</source>
        <translation>Under the page</translation>
    </message>
    <message>
        <source>Under the content, a mark shows on pages with a clear background and is hidden under opaque scans.</source>
        <translation>Under the content, a mark shows on pages with a clear background and is hidden under opaque scans.</translation>
    </message>
    <message>
        <source>All pages</source>
        <translation>All pages</translation>
    </message>
    <message>
        <source>Skip the first page</source>
        <translation>Skip the first page</translation>
    </message>
    <message>
        <source>Start at</source>
        <translation>Start at</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Margin</source>
        <translation>Margin</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>Opacity</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Rotation</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>Layer</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message numerus="yes">
        <source>Stamp %n files</source>
        <translation>
            <numerusform>Stamp %n file</numerusform>
            <numerusform>Stamp %n files</numerusform>
        </translation>
    </message>
    <message>
        <source>Drop a PDF above to see its pages stamped.</source>
        <translation>Drop a PDF above to see its pages stamped.</translation>
    </message>
    <message>
        <source>Add a mark: a page number, a Bates number, a text or a picture.</source>
        <translation>Add a mark: a page number, a Bates number, a text or a picture.</translation>
    </message>
    <message>
        <source>Drop a PDF above to stamp it.</source>
        <translation>Drop a PDF above to stamp it.</translation>
    </message>
    <message numerus="yes">
        <source>Stamping %n file(s): follow it in the queue.</source>
        <translation>
            <numerusform>Stamping %n file: follow it in the queue.</numerusform>
            <numerusform>Stamping %n files: follow it in the queue.</numerusform>
        </translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>Top left</translation>
    </message>
    <message>
        <source>Top center</source>
        <translation>Top center</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>Top right</translation>
    </message>
    <message>
        <source>Center</source>
        <translation>Center</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>Bottom left</translation>
    </message>
    <message>
        <source>Bottom center</source>
        <translation>Bottom center</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>Bottom right</translation>
    </message>
    <message>
        <source>Drawing the preview…</source>
        <translation>Drawing the preview…</translation>
    </message>
    <message>
        <source>{n} the number, {total} the last one, {date} today, {name} the file name.</source>
        <translation>{n} the number, {total} the last one, {date} today, {name} the file name.</translation>
    </message>
</context>
</TS>
