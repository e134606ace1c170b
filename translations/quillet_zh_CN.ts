<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>Operation</name>
    <message>
        <source>Compress</source>
        <translation>压缩</translation>
    </message>
    <message>
        <source>Target Size</source>
        <translation>目标大小</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>合并</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>拆分</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>整理</translation>
    </message>
    <message>
        <source>PDF → Images</source>
        <translation>PDF → 图片</translation>
    </message>
    <message>
        <source>Images → PDF</source>
        <translation>图片 → PDF</translation>
    </message>
    <message>
        <source>Privacy Clean</source>
        <translation>隐私清理</translation>
    </message>
    <message>
        <source>Protect</source>
        <translation>加密保护</translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation>移除密码</translation>
    </message>
</context>
<context>
    <name>TaskState</name>
    <message>
        <source>Queued</source>
        <translation>排队中</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>进行中</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>已完成</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
</context>
<context>
    <name>quillet::AnalysisService</name>
    <message numerus="yes">
        <source>the analysis took longer than %n minute(s)</source>
        <translation>
            <numerusform>分析用时超过 %n 分钟</numerusform>
        </translation>
    </message>
    <message>
        <source>unreadable analysis (%1)</source>
        <translation>无法解读分析结果（%1）</translation>
    </message>
    <message>
        <source>the analysis stopped unexpectedly</source>
        <translation>分析意外中止</translation>
    </message>
    <message>
        <source>the analysis program could not be started</source>
        <translation>无法启动分析程序</translation>
    </message>
</context>
<context>
    <name>quillet::AppModel</name>
    <message>
        <source>Choose PDFs or images</source>
        <translation>选择 PDF 或图片</translation>
    </message>
</context>
<context>
    <name>quillet::DropZone</name>
    <message>
        <source>Choose files…</source>
        <translation>选择文件…</translation>
    </message>
    <message>
        <source>Choose a folder…</source>
        <translation>选择文件夹…</translation>
    </message>
</context>
<context>
    <name>quillet::LoadedFilesModel</name>
    <message>
        <source>Analysing…</source>
        <translation>正在分析…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>无法读取：%1</translation>
    </message>
    <message numerus="yes">
        <source>%n page(s)</source>
        <translation>
            <numerusform>%n 页</numerusform>
        </translation>
    </message>
    <message>
        <source>PDF %1</source>
        <translation>PDF %1</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s), %1 DPI on average</source>
        <translation>
            <numerusform>%n 张图片，平均 %1 DPI</numerusform>
        </translation>
    </message>
    <message>
        <source>missing</source>
        <translation>文件不存在</translation>
    </message>
    <message>
        <source>%1 file · %2</source>
        <translation>%1 文件 · %2</translation>
    </message>
</context>
<context>
    <name>quillet::MainWindow</name>
    <message>
        <source>PDFs and images</source>
        <translation>PDF 和图片</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Open PDFs or images</source>
        <translation>打开 PDF 或图片</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Show Quillet</source>
        <translation>显示 Quillet</translation>
    </message>
    <message>
        <source>Quillet is finishing your jobs</source>
        <translation>Quillet 正在完成你的任务</translation>
    </message>
    <message>
        <source>Your jobs go on in the background. Quillet quits when they are done.</source>
        <translation>任务会在后台继续进行，全部完成后 Quillet 将自动退出。</translation>
    </message>
    <message>
        <source>A job is still running. Quitting stops it; jobs that wait are offered again at the next start.</source>
        <translation>仍有任务正在运行。退出会中止该任务；排队中的任务会在下次启动时提示你继续。</translation>
    </message>
</context>
<context>
    <name>quillet::QueuePanel</name>
    <message>
        <source>No jobs yet. What you run appears here.</source>
        <translation>还没有任务。你运行的任务会显示在这里。</translation>
    </message>
    <message>
        <source>Clear finished</source>
        <translation>清除已结束</translation>
    </message>
    <message>
        <source>Queue</source>
        <translation>任务队列</translation>
    </message>
    <message numerus="yes">
        <source>%n done</source>
        <translation>
            <numerusform>已完成 %n 个</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::QueueRowDelegate</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>在文件夹中显示</translation>
    </message>
</context>
<context>
    <name>quillet::ResumeBanner</name>
    <message>
        <source>Previous batch was interrupted</source>
        <translation>上一批任务被中断</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>放弃</translation>
    </message>
    <message numerus="yes">
        <source>Task interrupted. Resume %n pending job(s)?</source>
        <translation>
            <numerusform>任务已中断。要继续剩下的 %n 个任务吗？</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::SectionView</name>
    <message>
        <source>See what is inside a PDF and what would make it better.</source>
        <translation>查看 PDF 的内容，以及可以如何改进。</translation>
    </message>
    <message>
        <source>Drop PDFs or images here</source>
        <translation>将 PDF 或图片拖放到这里</translation>
    </message>
    <message>
        <source>Nothing leaves this computer.</source>
        <translation>所有文件都不会离开这台电脑。</translation>
    </message>
    <message>
        <source>Make PDFs smaller: three quality tiers, a lossless optimisation, or a target size.</source>
        <translation>缩小 PDF：三档画质、无损优化，或指定目标大小。</translation>
    </message>
    <message>
        <source>Drop PDFs to compress</source>
        <translation>拖放要压缩的 PDF</translation>
    </message>
    <message>
        <source>Combine PDFs and images into one PDF, in the order you choose. Each drop adds to the list.</source>
        <translation>按你选择的顺序将 PDF 和图片合并为一个 PDF。每次拖放都会添加到列表末尾。</translation>
    </message>
    <message>
        <source>Drop PDFs and images to merge</source>
        <translation>拖放要合并的 PDF 和图片</translation>
    </message>
    <message>
        <source>Split a PDF into parts: every page, page ranges, every N pages, extracted pages or parts of a size.</source>
        <translation>将 PDF 拆分成多个部分：逐页、按页码范围、每 N 页、提取指定页面，或按文件大小。</translation>
    </message>
    <message>
        <source>Drop a PDF to split</source>
        <translation>拖放要拆分的 PDF</translation>
    </message>
    <message>
        <source>Reorder, rotate, delete, duplicate, extract and insert pages.</source>
        <translation>重新排序、旋转、删除、复制、提取和插入页面。</translation>
    </message>
    <message>
        <source>Drop a PDF to organize pages</source>
        <translation>拖放 PDF 以整理页面</translation>
    </message>
    <message>
        <source>Turn PDF pages into PNG, JPEG, TIFF or HEIC images, or images into a PDF.</source>
        <translation>将 PDF 页面转换为 PNG、JPEG、TIFF 或 HEIC 图片，或将图片转换为 PDF。</translation>
    </message>
    <message>
        <source>Drop PDFs or images to convert</source>
        <translation>拖放要转换的 PDF 或图片</translation>
    </message>
    <message>
        <source>Remove metadata, and protect or unprotect with a password.</source>
        <translation>移除元数据，设置或移除密码保护。</translation>
    </message>
    <message>
        <source>Drop PDFs to clean or protect</source>
        <translation>拖放要清理或加密的 PDF</translation>
    </message>
    <message>
        <source>One action on many files at once.</source>
        <translation>一次对多个文件执行同一操作。</translation>
    </message>
    <message>
        <source>Drop PDFs or folders for batch processing</source>
        <translation>拖放 PDF 或文件夹进行批量处理</translation>
    </message>
    <message>
        <source>100 PDFs → pick an action → done. Folder structure is preserved.</source>
        <translation>100 个 PDF → 选择操作 → 完成。文件夹结构保持不变。</translation>
    </message>
    <message>
        <source>Finished jobs, newest first. Only what was done is kept, never the documents themselves.</source>
        <translation>已结束的任务，最新的在前。这里只记录做了什么，从不保存文档本身。</translation>
    </message>
    <message>
        <source>Drop files to load them</source>
        <translation>拖放文件以载入</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>首页</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>压缩</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>合并</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>拆分</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>整理</translation>
    </message>
    <message>
        <source>Convert</source>
        <translation>转换</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>隐私</translation>
    </message>
    <message>
        <source>Batch</source>
        <translation>批量处理</translation>
    </message>
    <message>
        <source>History</source>
        <translation>历史记录</translation>
    </message>
    <message>
        <source>High Quality</source>
        <translation>高画质</translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation>均衡</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>最小体积</translation>
    </message>
    <message>
        <source>Lossless Optimize</source>
        <translation>无损优化</translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation>画质：</translation>
    </message>
    <message>
        <source>No finished jobs yet.</source>
        <translation>还没有已结束的任务。</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>日期</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
    <message>
        <source>Choose a folder of PDFs</source>
        <translation>选择存放 PDF 的文件夹</translation>
    </message>
</context>
<context>
    <name>quillet::SettingsWindow</name>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>外观</translation>
    </message>
    <message>
        <source>System</source>
        <translation>跟随系统</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>浅色</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>深色</translation>
    </message>
    <message>
        <source>Colours:</source>
        <translation>配色：</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>输出</translation>
    </message>
    <message>
        <source>Same folder as the original</source>
        <translation>与原文件相同的文件夹</translation>
    </message>
    <message>
        <source>A subfolder next to the original</source>
        <translation>原文件旁的子文件夹</translation>
    </message>
    <message>
        <source>A folder of my choice</source>
        <translation>自选文件夹</translation>
    </message>
    <message>
        <source>No folder chosen</source>
        <translation>尚未选择文件夹</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>选择…</translation>
    </message>
    <message>
        <source>Replace the original file</source>
        <translation>替换原文件</translation>
    </message>
    <message>
        <source>The original is overwritten by the result and cannot be brought back. Keep a copy of anything you cannot afford to lose.</source>
        <translation>原文件将被处理结果覆盖，且无法恢复。重要文件请先自行备份。</translation>
    </message>
    <message>
        <source>Choose the folder for results</source>
        <translation>选择保存结果的文件夹</translation>
    </message>
    <message>
        <source>Save results in:</source>
        <translation>结果保存到：</translation>
    </message>
    <message>
        <source>Subfolder name:</source>
        <translation>子文件夹名称：</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>文件夹：</translation>
    </message>
    <message>
        <source>{name} the original name · {action} what was done (compressed, merged, …) · {date} date and time · {part} the part number of a split · {size} the word “sized”</source>
        <translation>{name} 原文件名 · {action} 所做的操作（compressed、merged 等）· {date} 日期和时间 · {part} 拆分后的分卷编号 · {size} 固定为单词“sized”</translation>
    </message>
    <message>
        <source>File name:</source>
        <translation>文件名：</translation>
    </message>
    <message>
        <source>Example: report.pdf compressed becomes %1</source>
        <translation>示例：report.pdf 压缩后为 %1</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>Restart required — the new language takes effect after relaunching quillet.</source>
        <translation>需要重启 — 新语言将在重新启动 quillet 后生效。</translation>
    </message>
    <message>
        <source>Relaunch</source>
        <translation>重新启动</translation>
    </message>
    <message>
        <source>A job is still running. Relaunching stops it; jobs that wait are offered again after the relaunch.</source>
        <translation>仍有任务正在运行。重新启动会中止该任务；排队中的任务会在重新启动后提示你继续。</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>语言：</translation>
    </message>
    <message>
        <source>History</source>
        <translation>历史记录</translation>
    </message>
    <message>
        <source>Clear history</source>
        <translation>清除历史记录</translation>
    </message>
    <message>
        <source>Remove every finished job from the history? Your files are not touched.</source>
        <translation>要从历史记录中移除所有已结束的任务吗？你的文件不会受到影响。</translation>
    </message>
    <message>
        <source>The history keeps what was done to which file and the sizes, never the documents themselves.</source>
        <translation>历史记录只保存对哪个文件做了什么操作以及文件大小，从不保存文档本身。</translation>
    </message>
    <message numerus="yes">
        <source>%n finished job(s) in the history</source>
        <translation>
            <numerusform>历史记录中有 %n 个已结束的任务</numerusform>
        </translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>统计</translation>
    </message>
    <message>
        <source>Share anonymous usage statistics</source>
        <translation>共享匿名使用统计</translation>
    </message>
    <message>
        <source>Quillet sends nothing anywhere, whatever this switch says: no statistics, no documents, no file names. Your choice is only remembered.</source>
        <translation>无论此开关如何设置，Quillet 都不会向任何地方发送任何内容：没有统计数据、没有文档、没有文件名。这里只会记住你的选择。</translation>
    </message>
</context>
</TS>
