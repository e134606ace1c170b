<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>AnalysisTexts</name>
    <message>
        <source>Author</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creator</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Producer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove the password if you know it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 → ~%2 · images at %3 DPI on average</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scanned document detected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make searchable (OCR) · coming soon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Personal metadata found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Author, creator or dates are embedded. Clean before sharing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Embedded content detected</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Operation</name>
    <message>
        <source>Compress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Organize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF → Images</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images → PDF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Privacy Clean</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Protect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PageSelection</name>
    <message>
        <source>Enter the pages, e.g. %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” is not a page or a range of pages, e.g. %2.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Completed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Perform a file manager&apos;s action on the files: compress, merge, convert, clean or images.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose files, then compress, merge or clean them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start for the session bus only: no window until one is asked for.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>quillet-app: unknown action &quot;%1&quot;; use compress, merge, convert, clean or images
</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the analysis stopped unexpectedly</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the analysis program could not be started</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::AppModel</name>
    <message>
        <source>Choose PDFs or images</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::AutomationBus</name>
    <message>
        <source>Unknown error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown quality &quot;%1&quot;; use highQuality, balanced, smallest or lossless.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an absolute path.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::BatchView</name>
    <message>
        <source>Compress · Balanced</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compress · Smallest</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compress under 10 MB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compress under 5 MB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Convert to PNG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Convert to JPEG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Metadata</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate 90°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Password (known password)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Action:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Applied to every selected file — use when all files share the password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files of the batch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>State</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear finished</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::BeforeAfterView</name>
    <message>
        <source>Previous page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Original page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Original: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drawing…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::CompressView</name>
    <message>
        <source>High Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images kept sharp for print; a modest saving.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Good on screen and in print at home; the usual choice.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>For e-mail and the web: images at screen resolution.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lossless Optimize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing visible changes: only the file&apos;s structure is tightened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDFs to compress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Predicted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Options</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Before / After</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Under a size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unit of the target size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Presets</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as Preset…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as Preset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name of the preset:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Presets:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>at most %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Analysing…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No presets yet</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::ConvertView</name>
    <message>
        <source>Convert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files to convert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All pages, or e.g. %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lossless</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resolution:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The images of each PDF go into a folder beside it, named after it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size of each image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>US Letter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>US Legal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fit: the whole image on the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill: the page covered, edges cut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> pt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page size:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Placement:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Margin:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The images become the pages of one PDF, in the order they were loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Placement</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load images to make a PDF of them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load a PDF to turn its pages into images.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs or images above.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::DropZone</name>
    <message>
        <source>Choose files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a folder…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::FileCard</name>
    <message>
        <source>Analysing…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 file · %2</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (coming soon)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Inspect</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::HistoryView</name>
    <message>
        <source>Finished jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear History…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Run Again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No finished jobs yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a job to open its result or run it again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This job&apos;s options were not kept, so it cannot be run again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files of this job are no longer where they were.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is no longer there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The results of this job are no longer there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear History</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::HomeView</name>
    <message>
        <source>Drop PDFs above to see what is inside them and what would make them better.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::InspectorSheet</name>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Inspect %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Overview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Security</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compression</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encrypted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Average image DPI</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scanned pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages with text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages not analysed</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effective DPI</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>monochrome</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>other</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No images.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DPI</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Estimated bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No fonts.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Author</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Subject</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creator</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Producer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Created</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Attachments</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Form fields</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JavaScript</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>External links</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Annotations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Signatures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>High Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lossless Optimize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tier</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Predicted size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Predictions come from the images found; the result of a real run may differ.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::IntentRunner</name>
    <message>
        <source>The action was stopped before it finished.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::LoadedFilesModel</name>
    <message>
        <source>Analysing…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 file · %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::MainWindow</name>
    <message>
        <source>PDFs and images</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open PDFs or images</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Quillet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quillet is finishing your jobs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your jobs go on in the background. Quillet quits when they are done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A job is still running. Quitting stops it; jobs that wait are offered again at the next start.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose PDFs or images</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::MergeView</name>
    <message>
        <source>Files to merge, in order</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alt+Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert a blank page between files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs and images above; each drop adds to the end of the list.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be read (%2): remove it before merging.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add at least two files to merge.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” could not be opened as a PDF.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” is locked with a password. Remove the password in Privacy, then organize the unlocked copy.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” could not be read: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” could not be written. Check that its folder exists and that you may write there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing to write for “%1”: no page is left or selected.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::OrganizePageModel</name>
    <message>
        <source>Page %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::OrganizeView</name>
    <message>
        <source>Drop a PDF to organize pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate selection 90° left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate selection 90° right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate selected pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete selected pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert pages from PDFs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extract selected pages to a new PDF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extract…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the organized PDF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select all pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extracted: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opening “%1”…</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF documents (*.pdf *.PDF)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extract Selected Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This PDF may contain digital signatures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flattening or reorganizing signed documents can invalidate their signatures. Continue?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Anyway</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Organize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard the changes to “%1”?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” was loaded. Opening it here replaces the pages you changed and did not save.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard Changes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep Editing</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::PrivacyView</name>
    <message>
        <source>Safe</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Removes the document&apos;s details (title, author, subject, keywords, software, dates) and its XMP metadata. Pages, links and annotations stay; bookmarks, forms, scripts and attachments are not kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Removes every trace of who made the file and with what: document details, XMP metadata on pages, images and fonts, editing data, thumbnails, scripts and attachments. The file gets a new ID.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flatten &amp; Clean</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keeps only what a reader sees: annotations and filled-in form fields are burnt into the pages, then everything interactive and all metadata go.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Author</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creator</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Producer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Created</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clean</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Metadata</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Personal details found in the files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Found in the files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repeat the open password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Owner password (optional)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open password:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Owner password:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is encrypted with AES-256; it opens only with the open password. Without an owner password, the open password is used for both.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current password:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Writes a copy that opens without a password; the document details are kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing personal found</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs above first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not a PDF: only PDFs can be cleaned or protected.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter an open password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The two passwords do not match.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter the current password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Protect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs above.</source>
        <translation type="unfinished"></translation>
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
</context>
<context>
    <name>quillet::QueuePanel</name>
    <message>
        <source>No jobs yet. What you run appears here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear finished</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Queue</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::ResumeBanner</name>
    <message>
        <source>Previous batch was interrupted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs or images here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing leaves this computer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make PDFs smaller: three quality tiers, a lossless optimisation, or a target size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs to compress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Combine PDFs and images into one PDF, in the order you choose. Each drop adds to the list.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs and images to merge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split a PDF into parts: every page, page ranges, every N pages, extracted pages or parts of a size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop a PDF to split</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reorder, rotate, delete, duplicate, extract and insert pages.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop a PDF to organize pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn PDF pages into PNG, JPEG, TIFF or HEIC images, or images into a PDF.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs or images to convert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove metadata, and protect or unprotect with a password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs to clean or protect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One action on many files at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop PDFs or folders for batch processing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>100 PDFs → pick an action → done. Folder structure is preserved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finished jobs, newest first. Only what was done is kept, never the documents themselves.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop files to load them</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Organize</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Convert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Batch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a folder of PDFs</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::SettingsWindow</name>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Light</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Colours:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Same folder as the original</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A subfolder next to the original</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A folder of my choice</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No folder chosen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace the original file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The original is overwritten by the result and cannot be brought back. Keep a copy of anything you cannot afford to lose.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the folder for results</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save results in:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Subfolder name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>{name} the original name · {action} what was done (compressed, merged, …) · {date} date and time · {part} the part number of a split · {size} the word “sized”</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Example: report.pdf compressed becomes %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Language</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restart required — the new language takes effect after relaunching quillet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Relaunch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A job is still running. Relaunching stops it; jobs that wait are offered again after the relaunch.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Language:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>History</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear history</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove every finished job from the history? Your files are not touched.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The history keeps what was done to which file and the sizes, never the documents themselves.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Share anonymous usage statistics</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quillet sends nothing anywhere, whatever this switch says: no statistics, no documents, no file names. Your choice is only remembered.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>quillet::SplitView</name>
    <message>
        <source>Split</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page ranges</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages per file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages to extract</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Largest size of a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unit of the size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each page becomes a PDF of its own.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each range becomes a PDF, in the order written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every N pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Runs of N pages; the last PDF holds the rest.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Extract pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The chosen pages, in page order, in one PDF.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By file size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Consecutive pages, each PDF kept under the size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not a PDF: only PDFs can be split.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No PDF loaded.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 — counting pages…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop a PDF above to split it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each PDF stays under %1; how many there are depends on the pages.</source>
        <translation type="unfinished"></translation>
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
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
