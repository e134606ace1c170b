<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
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
        <source>Quality:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No finished jobs yet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date</source>
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
</TS>
