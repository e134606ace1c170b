<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>AnalysisTexts</name>
    <message>
        <source>Author</source>
        <translation>作者</translation>
    </message>
    <message>
        <source>Creator</source>
        <translation>创建工具</translation>
    </message>
    <message>
        <source>Producer</source>
        <translation>生成工具</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>关键词</translation>
    </message>
    <message numerus="yes">
        <source>%n attachment(s)</source>
        <translation>
            <numerusform>%n 个附件</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n form field(s)</source>
        <translation>
            <numerusform>%n 个表单域</numerusform>
        </translation>
    </message>
    <message>
        <source>JavaScript</source>
        <translation>JavaScript</translation>
    </message>
    <message numerus="yes">
        <source>%n link(s)</source>
        <translation>
            <numerusform>%n 个链接</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n signature(s)</source>
        <translation>
            <numerusform>%n 个签名</numerusform>
        </translation>
    </message>
    <message>
        <source>Password protected</source>
        <translation>受密码保护</translation>
    </message>
    <message>
        <source>Remove the password if you know it.</source>
        <translation>如果知道密码，可以将其移除。</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>压缩</translation>
    </message>
    <message>
        <source>%1 → ~%2 · images at %3 DPI on average</source>
        <translation>%1 → 约 %2 · 图片平均 %3 DPI</translation>
    </message>
    <message>
        <source>Scanned document detected</source>
        <translation>检测到扫描文档</translation>
    </message>
    <message>
        <source>Personal metadata found</source>
        <translation>发现个人元数据</translation>
    </message>
    <message>
        <source>Author, creator or dates are embedded. Clean before sharing.</source>
        <translation>文件中嵌有作者、创建程序或日期信息。分享前请先清理。</translation>
    </message>
    <message>
        <source>Embedded content detected</source>
        <translation>检测到嵌入内容</translation>
    </message>
    <message>
        <source>Make searchable (OCR)</source>
        <translation>使文字可搜索（OCR）</translation>
    </message>
</context>
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
    <message>
        <source>Make Searchable</source>
        <translation>使文字可搜索</translation>
    </message>
    <message>
        <source>Redact</source>
        <translation>涂黑</translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation>加盖标记</translation>
    </message>
</context>
<context>
    <name>PageSelection</name>
    <message>
        <source>Enter the pages, e.g. %1.</source>
        <translation>请输入页码，例如 %1。</translation>
    </message>
    <message>
        <source>“%1” is not a page or a range of pages, e.g. %2.</source>
        <translation>“%1”不是有效的页码或页码范围，例如 %2。</translation>
    </message>
    <message numerus="yes">
        <source>The document has %n page(s): higher numbers mean the last page.</source>
        <translation>
            <numerusform>文档共 %n 页：超出的页码按最后一页处理。</numerusform>
        </translation>
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
    <name>main</name>
    <message>
        <source>Start for the session bus only: no window until one is asked for.</source>
        <translation>仅为会话总线启动：在请求窗口之前不显示窗口。</translation>
    </message>
    <message>
        <source>Perform a file manager&apos;s action on the files: compress, merge, convert, clean, ocr or images.</source>
        <translation>对这些文件执行文件管理器中的操作：compress（压缩）、merge（合并）、convert（转换）、clean（清理）、ocr（文字识别）或 images（图像制作 PDF）。</translation>
    </message>
    <message>
        <source>Choose files, then act on them: compress, merge, convert, clean, ocr or images.</source>
        <translation>先选择文件，再对它们执行操作：compress（压缩）、merge（合并）、convert（转换）、clean（清理）、ocr（文字识别）或 images（图像制作 PDF）。</translation>
    </message>
    <message>
        <source>quillet-app: unknown action &quot;%1&quot;; use compress, merge, convert, clean, ocr or images
</source>
        <translation>quillet-app：未知操作“%1”；请使用 compress、merge、convert、clean、ocr 或 images
</translation>
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
    <name>quillet::AutomationBus</name>
    <message>
        <source>Unknown error.</source>
        <translation>未知错误。</translation>
    </message>
    <message>
        <source>Unknown quality &quot;%1&quot;; use highQuality, balanced, smallest or lossless.</source>
        <translation>未知的质量“%1”；请使用 highQuality、balanced、smallest 或 lossless。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an absolute path.</source>
        <translation>“%1”不是绝对路径。</translation>
    </message>
</context>
<context>
    <name>quillet::BatchView</name>
    <message>
        <source>Compress · Balanced</source>
        <translation>压缩 · 均衡</translation>
    </message>
    <message>
        <source>Compress · Smallest</source>
        <translation>压缩 · 最小</translation>
    </message>
    <message>
        <source>Compress under 10 MB</source>
        <translation>压缩到 10 MB 以内</translation>
    </message>
    <message>
        <source>Compress under 5 MB</source>
        <translation>压缩到 5 MB 以内</translation>
    </message>
    <message>
        <source>Convert to PNG</source>
        <translation>转换为 PNG</translation>
    </message>
    <message>
        <source>Convert to JPEG</source>
        <translation>转换为 JPEG</translation>
    </message>
    <message>
        <source>Remove Metadata</source>
        <translation>删除元数据</translation>
    </message>
    <message>
        <source>Rotate 90°</source>
        <translation>旋转 90°</translation>
    </message>
    <message>
        <source>Remove Password (known password)</source>
        <translation>移除密码（已知密码）</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>Action:</source>
        <translation>操作：</translation>
    </message>
    <message>
        <source>Current password</source>
        <translation>当前密码</translation>
    </message>
    <message>
        <source>Applied to every selected file — use when all files share the password</source>
        <translation>将用于所有选中的文件——适用于所有文件密码相同的情况</translation>
    </message>
    <message>
        <source>Files of the batch</source>
        <translation>批量处理的文件</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Clear finished</source>
        <translation>清除已结束</translation>
    </message>
    <message numerus="yes">
        <source>%n done</source>
        <translation>
            <numerusform>已完成 %n 个</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Run on %n files</source>
        <translation>
            <numerusform>处理 %n 个文件</numerusform>
        </translation>
    </message>
    <message>
        <source>Drop PDFs or a folder above.</source>
        <translation>将 PDF 或文件夹拖放到上方。</translation>
    </message>
    <message>
        <source>Make searchable (OCR)</source>
        <translation>使文字可搜索（OCR）</translation>
    </message>
    <message>
        <source>Redact</source>
        <translation>涂黑</translation>
    </message>
    <message>
        <source>Words to redact</source>
        <translation>要涂黑的词语</translation>
    </message>
    <message>
        <source>Words, separated by commas</source>
        <translation>词语，用逗号分隔</translation>
    </message>
    <message>
        <source>Add page numbers</source>
        <translation>添加页码</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>水印</translation>
    </message>
    <message>
        <source>Watermark text</source>
        <translation>水印文字</translation>
    </message>
    <message>
        <source>CONFIDENTIAL</source>
        <translation>机密</translation>
    </message>
</context>
<context>
    <name>quillet::BeforeAfterView</name>
    <message>
        <source>Previous page</source>
        <translation>上一页</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>下一页</translation>
    </message>
    <message>
        <source>Original page</source>
        <translation>原始页面</translation>
    </message>
    <message>
        <source>Result page</source>
        <translation>结果页面</translation>
    </message>
    <message>
        <source>Original: %1</source>
        <translation>原文件：%1</translation>
    </message>
    <message>
        <source>Result: %1</source>
        <translation>结果：%1</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>第 %1 页，共 %2 页</translation>
    </message>
    <message>
        <source>Page %1</source>
        <translation>第 %1 页</translation>
    </message>
    <message>
        <source>Drawing…</source>
        <translation>正在绘制…</translation>
    </message>
</context>
<context>
    <name>quillet::CompressView</name>
    <message>
        <source>High Quality</source>
        <translation>高画质</translation>
    </message>
    <message>
        <source>Images kept sharp for print; a modest saving.</source>
        <translation>图片保持清晰，适合打印；体积略有减小。</translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation>均衡</translation>
    </message>
    <message>
        <source>Good on screen and in print at home; the usual choice.</source>
        <translation>屏幕阅读和家用打印效果都好，是最常用的选择。</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>最小体积</translation>
    </message>
    <message>
        <source>For e-mail and the web: images at screen resolution.</source>
        <translation>适合邮件和网页：图片采用屏幕分辨率。</translation>
    </message>
    <message>
        <source>Lossless Optimize</source>
        <translation>无损优化</translation>
    </message>
    <message>
        <source>Nothing visible changes: only the file&apos;s structure is tightened.</source>
        <translation>外观完全不变，只精简文件结构。</translation>
    </message>
    <message>
        <source>PDFs to compress</source>
        <translation>要压缩的 PDF</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Predicted</source>
        <translation>预计大小</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>Before / After</source>
        <translation>前后对比</translation>
    </message>
    <message>
        <source>Compress</source>
        <translation>压缩</translation>
    </message>
    <message>
        <source>Under a size</source>
        <translation>不超过指定大小</translation>
    </message>
    <message>
        <source>Target size</source>
        <translation>目标大小</translation>
    </message>
    <message>
        <source>Unit of the target size</source>
        <translation>目标大小的单位</translation>
    </message>
    <message>
        <source>Presets</source>
        <translation>预设</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Save as Preset…</source>
        <translation>存为预设…</translation>
    </message>
    <message>
        <source>Save as Preset</source>
        <translation>存为预设</translation>
    </message>
    <message>
        <source>Name of the preset:</source>
        <translation>预设名称：</translation>
    </message>
    <message>
        <source>Presets:</source>
        <translation>预设：</translation>
    </message>
    <message>
        <source>at most %1</source>
        <translation>最多 %1</translation>
    </message>
    <message>
        <source>Analysing…</source>
        <translation>正在分析…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>无法读取：%1</translation>
    </message>
    <message>
        <source>No presets yet</source>
        <translation>还没有预设</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) that are not PDFs will be left out.</source>
        <translation>
            <numerusform>%n 个非 PDF 文件将被略过。</numerusform>
        </translation>
    </message>
    <message>
        <source>Load a PDF first: only PDFs can be compressed.</source>
        <translation>请先载入 PDF：只有 PDF 可以压缩。</translation>
    </message>
</context>
<context>
    <name>quillet::ConvertView</name>
    <message>
        <source>Convert</source>
        <translation>转换</translation>
    </message>
    <message>
        <source>Files to convert</source>
        <translation>要转换的文件</translation>
    </message>
    <message>
        <source>All pages, or e.g. %1</source>
        <translation>全部页面，或例如 %1</translation>
    </message>
    <message>
        <source>lossless</source>
        <translation>无损</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>格式：</translation>
    </message>
    <message>
        <source>Resolution:</source>
        <translation>分辨率：</translation>
    </message>
    <message>
        <source>Pages:</source>
        <translation>页面：</translation>
    </message>
    <message>
        <source>Quality:</source>
        <translation>画质：</translation>
    </message>
    <message>
        <source>The images of each PDF go into a folder beside it, named after it.</source>
        <translation>每个 PDF 的图片会保存到其旁边以它命名的文件夹中。</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>分辨率</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>质量</translation>
    </message>
    <message>
        <source>Size of each image</source>
        <translation>与图片尺寸相同</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>US Letter</source>
        <translation>美国 Letter</translation>
    </message>
    <message>
        <source>US Legal</source>
        <translation>美国 Legal</translation>
    </message>
    <message>
        <source>Fit: the whole image on the page</source>
        <translation>适应：完整显示整张图片</translation>
    </message>
    <message>
        <source>Fill: the page covered, edges cut</source>
        <translation>填充：铺满页面，边缘会被裁掉</translation>
    </message>
    <message>
        <source> pt</source>
        <translation> 磅</translation>
    </message>
    <message>
        <source>Page size:</source>
        <translation>页面大小：</translation>
    </message>
    <message>
        <source>Placement:</source>
        <translation>摆放方式：</translation>
    </message>
    <message>
        <source>Margin:</source>
        <translation>页边距：</translation>
    </message>
    <message>
        <source>The images become the pages of one PDF, in the order they were loaded.</source>
        <translation>这些图片将按载入顺序成为同一个 PDF 的各页。</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>页面大小</translation>
    </message>
    <message>
        <source>Placement</source>
        <translation>摆放方式</translation>
    </message>
    <message>
        <source>Margin</source>
        <translation>页边距</translation>
    </message>
    <message>
        <source>Load images to make a PDF of them.</source>
        <translation>请载入图片以生成 PDF。</translation>
    </message>
    <message>
        <source>Load a PDF to turn its pages into images.</source>
        <translation>请载入 PDF 以将其页面转换为图片。</translation>
    </message>
    <message>
        <source>Drop PDFs or images above.</source>
        <translation>将 PDF 或图片拖放到上方。</translation>
    </message>
    <message numerus="yes">
        <source>%n image(s) into one PDF.</source>
        <translation>
            <numerusform>将 %n 张图片合成一个 PDF。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n PDF(s) into images.</source>
        <translation>
            <numerusform>将 %n 个 PDF 转换为图片。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n page(s) into images.</source>
        <translation>
            <numerusform>将 %n 页转换为图片。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n other file(s) are left out.</source>
        <translation>
            <numerusform>其余 %n 个文件不做处理。</numerusform>
        </translation>
    </message>
    <message>
        <source>Converting: follow it in the queue.</source>
        <translation>正在转换，可在任务队列中查看进度。</translation>
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
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>quillet::EngineTexts</name>
    <message>
        <source>%1 of %2 pages made searchable</source>
        <translation>%2 页中的 %1 页已可搜索</translation>
    </message>
    <message>
        <source>This PDF is already optimized.</source>
        <translation>此 PDF 已经过优化。</translation>
    </message>
    <message>
        <source>Already under target — optimized losslessly.</source>
        <translation>已低于目标大小 — 已无损优化。</translation>
    </message>
    <message>
        <source>Already under %1.</source>
        <translation>已低于 %1。</translation>
    </message>
    <message>
        <source>Best effort: %1 — this PDF cannot reach %2 without destroying quality.</source>
        <translation>尽力而为：%1 — 此 PDF 无法在不破坏质量的情况下达到 %2。</translation>
    </message>
    <message>
        <source>File not found: %1</source>
        <translation>找不到文件：%1</translation>
    </message>
    <message>
        <source>Could not open %1.</source>
        <translation>无法打开 %1。</translation>
    </message>
    <message>
        <source>Could not open %1: %2.</source>
        <translation>无法打开 %1（文件已损坏、不是 PDF 或无法读取）。</translation>
    </message>
    <message>
        <source>Writing the PDF failed: %1</source>
        <translation>写入 PDF 失败：%1</translation>
    </message>
    <message>
        <source>Could not safely process this PDF.</source>
        <translation>无法安全地处理此 PDF。</translation>
    </message>
    <message>
        <source>This PDF cannot be compressed under %1 without unacceptable quality loss.</source>
        <translation>此 PDF 无法在不造成不可接受的质量损失的情况下压缩到 %1 以下。</translation>
    </message>
    <message>
        <source>Incorrect password.</source>
        <translation>密码不正确。</translation>
    </message>
    <message>
        <source>The document has no pages.</source>
        <translation>该文档没有页面。</translation>
    </message>
    <message>
        <source>No input files.</source>
        <translation>没有输入文件。</translation>
    </message>
    <message>
        <source>Unsupported image: %1</source>
        <translation>不支持的图像：%1</translation>
    </message>
    <message>
        <source>No pages matched &quot;%1&quot;.</source>
        <translation>没有与“%1”匹配的页面。</translation>
    </message>
    <message>
        <source>Set a maximum size per output file.</source>
        <translation>请设置每个输出文件的最大大小。</translation>
    </message>
    <message>
        <source>Enter an open password.</source>
        <translation>请输入打开密码。</translation>
    </message>
    <message>
        <source>The file changed while it was being split.</source>
        <translation>拆分过程中文件发生了变化。</translation>
    </message>
    <message>
        <source>%1 is not processed: its streams expand to more than %2 MB when decoded.</source>
        <translation>未处理 %1：其数据流解码后超过 %2 MB。</translation>
    </message>
    <message>
        <source>%1: Page %2 takes too long to draw</source>
        <translation>%1：第 %2 页绘制时间过长</translation>
    </message>
    <message>
        <source>The operation was cancelled.</source>
        <translation>操作已取消。</translation>
    </message>
    <message>
        <source>The job stopped unexpectedly: its worker process crashed.</source>
        <translation>任务意外停止：其工作进程崩溃了。</translation>
    </message>
    <message>
        <source>The job stopped unexpectedly: its worker process exited with status %1 without a result.</source>
        <translation>任务意外停止：其工作进程以状态 %1 退出，没有结果。</translation>
    </message>
    <message numerus="yes">
        <source>%n pages combined</source>
        <translation>
            <numerusform>已合并 %n 页</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n images</source>
        <translation>
            <numerusform>%n 张图像</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n pages skipped</source>
        <translation>
            <numerusform>已跳过 %n 页</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::FileCard</name>
    <message>
        <source>Analysing…</source>
        <translation>正在分析…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>无法读取：%1</translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation>移除密码</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>文件不存在</translation>
    </message>
    <message>
        <source>%1 file · %2</source>
        <translation>%1 文件 · %2</translation>
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
        <source>no images</source>
        <translation>没有图片</translation>
    </message>
    <message numerus="yes">
        <source>%n scanned page(s)</source>
        <translation>
            <numerusform>%n 页扫描页</numerusform>
        </translation>
    </message>
    <message>
        <source>text on %1% of pages</source>
        <translation>%1% 的页面含文字</translation>
    </message>
    <message numerus="yes">
        <source>%n font(s): %1</source>
        <translation>
            <numerusform>%n 种字体：%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Personal metadata: %1</source>
        <translation>个人元数据：%1</translation>
    </message>
    <message>
        <source>%1 (coming soon)</source>
        <translation>%1（即将推出）</translation>
    </message>
    <message>
        <source>Inspect</source>
        <translation>检查</translation>
    </message>
</context>
<context>
    <name>quillet::HistoryView</name>
    <message>
        <source>Finished jobs</source>
        <translation>已结束的任务</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>日期</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>操作</translation>
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
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>在文件夹中显示</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Clear History…</source>
        <translation>清空历史记录…</translation>
    </message>
    <message>
        <source>Run Again</source>
        <translation>再次运行</translation>
    </message>
    <message>
        <source>No finished jobs yet.</source>
        <translation>还没有已结束的任务。</translation>
    </message>
    <message>
        <source>Choose a job to open its result or run it again.</source>
        <translation>选择一个任务，即可打开其结果或再次运行。</translation>
    </message>
    <message>
        <source>This job&apos;s options were not kept, so it cannot be run again.</source>
        <translation>此任务的选项未被保存，无法再次运行。</translation>
    </message>
    <message>
        <source>The files of this job are no longer where they were.</source>
        <translation>此任务的文件已不在原来的位置。</translation>
    </message>
    <message numerus="yes">
        <source>Queued again without %n missing file(s).</source>
        <translation>
            <numerusform>已重新加入队列，缺少的 %n 个文件未包含在内。</numerusform>
        </translation>
    </message>
    <message>
        <source>Queued again: follow it in the queue.</source>
        <translation>已重新加入队列，可在任务队列中查看进度。</translation>
    </message>
    <message>
        <source>%1 is no longer there.</source>
        <translation>%1 已不存在。</translation>
    </message>
    <message>
        <source>The results of this job are no longer there.</source>
        <translation>此任务的结果文件已不存在。</translation>
    </message>
    <message>
        <source>Clear History</source>
        <translation>清空历史记录</translation>
    </message>
    <message numerus="yes">
        <source>Remove all %n finished job(s) from the history?</source>
        <translation>
            <numerusform>要从历史记录中删除全部 %n 个已结束的任务吗？</numerusform>
        </translation>
    </message>
    <message>
        <source>The files the jobs made stay where they are.</source>
        <translation>任务生成的文件不会被删除。</translation>
    </message>
</context>
<context>
    <name>quillet::HomeView</name>
    <message>
        <source>Drop PDFs above to see what is inside them and what would make them better.</source>
        <translation>将 PDF 拖放到上方，查看其中的内容以及可以如何改进。</translation>
    </message>
    <message numerus="yes">
        <source>%n more file(s) loaded without a card. Batch works on every file.</source>
        <translation>
            <numerusform>另有 %n 个文件已载入但未显示卡片。“批量处理”会处理所有文件。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::InspectorSheet</name>
    <message>
        <source>yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>no</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Inspect %1</source>
        <translation>检查 %1</translation>
    </message>
    <message>
        <source>Overview</source>
        <translation>概览</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation>字体</translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation>元数据</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>安全</translation>
    </message>
    <message>
        <source>Compression</source>
        <translation>压缩</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>PDF version</source>
        <translation>PDF 版本</translation>
    </message>
    <message>
        <source>Encrypted</source>
        <translation>已加密</translation>
    </message>
    <message>
        <source>Average image DPI</source>
        <translation>图片平均 DPI</translation>
    </message>
    <message>
        <source>Scanned pages</source>
        <translation>扫描页</translation>
    </message>
    <message>
        <source>Pages with text</source>
        <translation>含文字的页面</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>页面大小</translation>
    </message>
    <message>
        <source>Pages not analysed</source>
        <translation>未分析的页数</translation>
    </message>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 及另外 %n 种</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>yes (%n operator(s))</source>
        <translation>
            <numerusform>是（%n 个文字操作符）</numerusform>
        </translation>
    </message>
    <message>
        <source>Page</source>
        <translation>页码</translation>
    </message>
    <message>
        <source>Effective DPI</source>
        <translation>有效 DPI</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>JPEG</source>
        <translation>JPEG</translation>
    </message>
    <message>
        <source>monochrome</source>
        <translation>黑白</translation>
    </message>
    <message>
        <source>other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>No images.</source>
        <translation>没有图片。</translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation>像素</translation>
    </message>
    <message>
        <source>DPI</source>
        <translation>DPI</translation>
    </message>
    <message>
        <source>Estimated bytes</source>
        <translation>估计大小</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>No fonts.</source>
        <translation>没有字体。</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>字体</translation>
    </message>
    <message>
        <source>First page</source>
        <translation>首次出现页</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>标题</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>作者</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>主题</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>关键词</translation>
    </message>
    <message>
        <source>Creator</source>
        <translation>创建工具</translation>
    </message>
    <message>
        <source>Producer</source>
        <translation>生成工具</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>创建时间</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Attachments</source>
        <translation>附件</translation>
    </message>
    <message>
        <source>Form fields</source>
        <translation>表单域</translation>
    </message>
    <message>
        <source>JavaScript</source>
        <translation>JavaScript</translation>
    </message>
    <message>
        <source>External links</source>
        <translation>外部链接</translation>
    </message>
    <message>
        <source>Annotations</source>
        <translation>注释</translation>
    </message>
    <message>
        <source>Signatures</source>
        <translation>签名</translation>
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
        <source>Tier</source>
        <translation>档位</translation>
    </message>
    <message>
        <source>Predicted size</source>
        <translation>预计大小</translation>
    </message>
    <message>
        <source>Predictions come from the images found; the result of a real run may differ.</source>
        <translation>预计值根据文件中的图片估算，实际结果可能不同。</translation>
    </message>
</context>
<context>
    <name>quillet::IntentRunner</name>
    <message>
        <source>The action was stopped before it finished.</source>
        <translation>操作在完成前被停止。</translation>
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
    <message>
        <source>Choose PDFs or images</source>
        <translation>选择 PDF 或图片</translation>
    </message>
</context>
<context>
    <name>quillet::MergeView</name>
    <message>
        <source>Files to merge, in order</source>
        <translation>要合并的文件（按顺序）</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>上移</translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation>Alt+上箭头</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>下移</translation>
    </message>
    <message>
        <source>Alt+Down</source>
        <translation>Alt+下箭头</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Insert a blank page between files</source>
        <translation>在文件之间插入空白页</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>合并</translation>
    </message>
    <message>
        <source>Drop PDFs and images above; each drop adds to the end of the list.</source>
        <translation>将 PDF 和图片拖放到上方；每次拖放的文件都会追加到列表末尾。</translation>
    </message>
    <message numerus="yes">
        <source>%n file(s)</source>
        <translation>
            <numerusform>%n 个文件</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n page(s) in all</source>
        <translation>
            <numerusform>共 %n 页</numerusform>
        </translation>
    </message>
    <message>
        <source>add another file to merge</source>
        <translation>再添加一个文件即可合并</translation>
    </message>
    <message>
        <source>%1 cannot be read (%2): remove it before merging.</source>
        <translation>无法读取 %1（%2）：请先将其移除再合并。</translation>
    </message>
    <message>
        <source>Add at least two files to merge.</source>
        <translation>请至少添加两个文件再合并。</translation>
    </message>
    <message numerus="yes">
        <source>Merging %n file(s): follow it in the queue.</source>
        <translation>
            <numerusform>正在合并 %n 个文件，可在任务队列中查看进度。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillet::OrganizeController</name>
    <message>
        <source>“%1” could not be found.</source>
        <translation>找不到“%1”。</translation>
    </message>
    <message>
        <source>“%1” could not be opened as a PDF.</source>
        <translation>无法将“%1”作为 PDF 打开。</translation>
    </message>
    <message>
        <source>“%1” is locked with a password. Remove the password in Privacy, then organize the unlocked copy.</source>
        <translation>“%1”受密码保护。请先在“隐私”中移除密码，再整理解锁后的副本。</translation>
    </message>
    <message>
        <source>“%1” could not be read: %2</source>
        <translation>无法读取“%1”：%2</translation>
    </message>
    <message>
        <source>“%1” could not be written. Check that its folder exists and that you may write there.</source>
        <translation>无法写入“%1”。请检查其所在文件夹是否存在，以及你是否有写入权限。</translation>
    </message>
    <message>
        <source>Nothing to write for “%1”: no page is left or selected.</source>
        <translation>“%1”没有可写入的内容：没有剩余页面，或未选择任何页面。</translation>
    </message>
</context>
<context>
    <name>quillet::OrganizePageModel</name>
    <message>
        <source>Page %1</source>
        <translation>第 %1 页</translation>
    </message>
</context>
<context>
    <name>quillet::OrganizeView</name>
    <message>
        <source>Drop a PDF to organize pages</source>
        <translation>拖放 PDF 以整理页面</translation>
    </message>
    <message>
        <source>Rotate selection 90° left</source>
        <translation>将所选页面向左旋转 90°</translation>
    </message>
    <message>
        <source>Rotate Left</source>
        <translation>向左旋转</translation>
    </message>
    <message>
        <source>Rotate selection 90° right</source>
        <translation>将所选页面向右旋转 90°</translation>
    </message>
    <message>
        <source>Rotate Right</source>
        <translation>向右旋转</translation>
    </message>
    <message>
        <source>Duplicate selected pages</source>
        <translation>复制所选页面</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Delete selected pages</source>
        <translation>删除所选页面</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Insert pages from PDFs</source>
        <translation>从 PDF 插入页面</translation>
    </message>
    <message>
        <source>Insert…</source>
        <translation>插入…</translation>
    </message>
    <message>
        <source>Extract selected pages to a new PDF</source>
        <translation>将所选页面提取为新的 PDF</translation>
    </message>
    <message>
        <source>Extract…</source>
        <translation>提取…</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Save the organized PDF</source>
        <translation>保存整理后的 PDF</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Select all pages</source>
        <translation>选择全部页面</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>已保存：%1</translation>
    </message>
    <message>
        <source>Extracted: %1</source>
        <translation>已提取：%1</translation>
    </message>
    <message>
        <source>Thumbnail size</source>
        <translation>缩略图大小</translation>
    </message>
    <message>
        <source>Opening “%1”…</source>
        <translation>正在打开“%1”…</translation>
    </message>
    <message numerus="yes">
        <source>%n page(s)</source>
        <translation>
            <numerusform>%n 页</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected</source>
        <translation>
            <numerusform>已选 %n 页</numerusform>
        </translation>
    </message>
    <message>
        <source>Insert pages from PDFs (appended at the end)</source>
        <translation>从 PDF 插入页面（添加到末尾）</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf *.PDF)</source>
        <translation>PDF 文档 (*.pdf *.PDF)</translation>
    </message>
    <message>
        <source>Extract Selected Pages</source>
        <translation>提取所选页面</translation>
    </message>
    <message>
        <source>This PDF may contain digital signatures</source>
        <translation>此 PDF 可能包含数字签名</translation>
    </message>
    <message>
        <source>Flattening or reorganizing signed documents can invalidate their signatures. Continue?</source>
        <translation>拼合或重新整理已签名的文档可能会使其签名失效。要继续吗？</translation>
    </message>
    <message>
        <source>Save Anyway</source>
        <translation>仍然保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Organize</source>
        <translation>整理</translation>
    </message>
    <message>
        <source>Discard the changes to “%1”?</source>
        <translation>放弃对“%1”所做的更改吗？</translation>
    </message>
    <message>
        <source>“%1” was loaded. Opening it here replaces the pages you changed and did not save.</source>
        <translation>已载入“%1”。在这里打开它会替换你修改过但尚未保存的页面。</translation>
    </message>
    <message>
        <source>Discard Changes</source>
        <translation>放弃更改</translation>
    </message>
    <message>
        <source>Keep Editing</source>
        <translation>继续编辑</translation>
    </message>
</context>
<context>
    <name>quillet::PageRenderService</name>
    <message>
        <source>This page takes too long to draw</source>
        <translation>此页面绘制时间过长</translation>
    </message>
</context>
<context>
    <name>quillet::PrivacyView</name>
    <message>
        <source>Safe</source>
        <translation>安全</translation>
    </message>
    <message>
        <source>Removes the document&apos;s details (title, author, subject, keywords, software, dates) and its XMP metadata. Pages, links and annotations stay; bookmarks, forms, scripts and attachments are not kept.</source>
        <translation>删除文档信息（标题、作者、主题、关键词、制作软件、日期）及其 XMP 元数据。页面、链接和批注保持不变；书签、表单、脚本和附件不会保留。</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>隐私</translation>
    </message>
    <message>
        <source>Removes every trace of who made the file and with what: document details, XMP metadata on pages, images and fonts, editing data, thumbnails, scripts and attachments. The file gets a new ID.</source>
        <translation>清除文件由谁、用什么软件制作的全部痕迹：文档信息，页面、图片和字体中的 XMP 元数据，编辑数据，缩略图，脚本和附件。文件会获得新的 ID。</translation>
    </message>
    <message>
        <source>Flatten &amp; Clean</source>
        <translation>扁平化并清理</translation>
    </message>
    <message>
        <source>Keeps only what a reader sees: annotations and filled-in form fields are burnt into the pages, then everything interactive and all metadata go.</source>
        <translation>只保留读者看到的内容：批注和已填写的表单域会被固化到页面中，随后删除所有交互内容和全部元数据。</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>作者</translation>
    </message>
    <message>
        <source>Creator</source>
        <translation>创建工具</translation>
    </message>
    <message>
        <source>Producer</source>
        <translation>生成工具</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>关键词</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>创建时间</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Clean</source>
        <translation>清理</translation>
    </message>
    <message>
        <source>Remove Metadata</source>
        <translation>删除元数据</translation>
    </message>
    <message>
        <source>Add Password</source>
        <translation>添加密码</translation>
    </message>
    <message>
        <source>Remove Password</source>
        <translation>移除密码</translation>
    </message>
    <message>
        <source>Personal details found in the files</source>
        <translation>文件中发现的个人信息</translation>
    </message>
    <message>
        <source>Found in the files</source>
        <translation>文件中发现的信息</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>Open password</source>
        <translation>打开密码</translation>
    </message>
    <message>
        <source>Repeat the open password</source>
        <translation>再次输入打开密码</translation>
    </message>
    <message>
        <source>Owner password (optional)</source>
        <translation>所有者密码（可选）</translation>
    </message>
    <message>
        <source>Open password:</source>
        <translation>打开密码：</translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation>确认密码：</translation>
    </message>
    <message>
        <source>Owner password:</source>
        <translation>所有者密码：</translation>
    </message>
    <message>
        <source>The file is encrypted with AES-256; it opens only with the open password. Without an owner password, the open password is used for both.</source>
        <translation>文件将使用 AES-256 加密，只有输入打开密码才能打开。未设置所有者密码时，两者都使用打开密码。</translation>
    </message>
    <message>
        <source>Current password</source>
        <translation>当前密码</translation>
    </message>
    <message>
        <source>Current password:</source>
        <translation>当前密码：</translation>
    </message>
    <message>
        <source>Writes a copy that opens without a password; the document details are kept.</source>
        <translation>生成一份无需密码即可打开的副本；文档信息保持不变。</translation>
    </message>
    <message>
        <source>nothing personal found</source>
        <translation>未发现个人信息</translation>
    </message>
    <message numerus="yes">
        <source>%n detail(s)</source>
        <translation>
            <numerusform>%n 项信息</numerusform>
        </translation>
    </message>
    <message>
        <source>Analysing…</source>
        <translation>正在分析…</translation>
    </message>
    <message>
        <source>could not be read: %1</source>
        <translation>无法读取：%1</translation>
    </message>
    <message>
        <source>Drop PDFs above first.</source>
        <translation>请先将 PDF 拖放到上方。</translation>
    </message>
    <message>
        <source>Enter an open password.</source>
        <translation>请输入打开密码。</translation>
    </message>
    <message>
        <source>The two passwords do not match.</source>
        <translation>两次输入的密码不一致。</translation>
    </message>
    <message>
        <source>Enter the current password.</source>
        <translation>请输入当前密码。</translation>
    </message>
    <message>
        <source>Protect</source>
        <translation>加密保护</translation>
    </message>
    <message>
        <source>Drop PDFs above.</source>
        <translation>将 PDF 拖放到上方。</translation>
    </message>
    <message numerus="yes">
        <source>%n PDF(s) loaded.</source>
        <translation>
            <numerusform>已载入 %n 个 PDF。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n other file(s) are left out.</source>
        <translation>
            <numerusform>其余 %n 个文件不做处理。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n PDF(s) queued: follow them in the queue.</source>
        <translation>
            <numerusform>已将 %n 个 PDF 加入队列，可在任务队列中查看进度。</numerusform>
        </translation>
    </message>
    <message>
        <source>Make Searchable</source>
        <translation>使文字可搜索</translation>
    </message>
    <message>
        <source>English</source>
        <translation>英语</translation>
    </message>
    <message>
        <source>Chinese (Simplified)</source>
        <translation>简体中文</translation>
    </message>
    <message>
        <source>Languages:</source>
        <translation>语言：</translation>
    </message>
    <message>
        <source>Pages without text get an invisible layer of the words read on them, so they can be selected, copied and searched. Nothing else changes: images are not re-encoded, and pages that already have text are left as they are.</source>
        <translation>没有文字的页面会加上一层不可见的文字（从页面上识别出来），可以选择、复制和搜索。其他一切不变：图像不会重新编码，已有文字的页面保持原样。</translation>
    </message>
    <message>
        <source>%1 is not a PDF: only PDFs can be cleaned, protected or made searchable.</source>
        <translation>%1 不是 PDF：只有 PDF 才能清理、加密或使文字可搜索。</translation>
    </message>
    <message>
        <source>Tick at least one language.</source>
        <translation>请至少勾选一种语言。</translation>
    </message>
    <message>
        <source>Redact</source>
        <translation>涂黑</translation>
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
    <name>quillet::RedactPageView</name>
    <message>
        <source>Page to redact</source>
        <translation>要涂黑的页面</translation>
    </message>
    <message>
        <source>Drag to draw a box over what to remove. Delete removes the selected box; Ctrl+Z undoes.</source>
        <translation>拖动以在要移除的内容上绘制框。Delete 键删除所选框，Ctrl+Z 撤销。</translation>
    </message>
    <message>
        <source>Drop a PDF above to draw boxes on its pages.</source>
        <translation>将 PDF 拖放到上方，即可在其页面上绘制框。</translation>
    </message>
</context>
<context>
    <name>quillet::RedactPanel</name>
    <message>
        <source>Previous</source>
        <translation>上一页</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>下一页</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Remove boxes</source>
        <translation>移除所有框</translation>
    </message>
    <message>
        <source>Words or an expression to remove</source>
        <translation>要移除的词语或表达式</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Match case</source>
        <translation>区分大小写</translation>
    </message>
    <message>
        <source>Regular expression</source>
        <translation>正则表达式</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>查找</translation>
    </message>
    <message>
        <source>Matches to redact</source>
        <translation>要涂黑的匹配项</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>页</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Found by</source>
        <translation>查找依据</translation>
    </message>
    <message>
        <source>No PDF loaded.</source>
        <translation>未载入 PDF。</translation>
    </message>
    <message>
        <source>Boxes are drawn on %1.</source>
        <translation>在 %1 上绘制涂黑框。</translation>
    </message>
    <message>
        <source>Reading the pages…</source>
        <translation>正在读取页面…</translation>
    </message>
    <message>
        <source>This PDF cannot be shown.</source>
        <translation>无法显示此 PDF。</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>第 %1 页，共 %2 页</translation>
    </message>
    <message>
        <source>Searching…</source>
        <translation>正在搜索…</translation>
    </message>
    <message>
        <source>Nothing found.</source>
        <translation>未找到任何内容。</translation>
    </message>
    <message>
        <source>Draw a box on the page, or search for words or a preset.</source>
        <translation>请在页面上绘制框，或搜索词语或选择预设。</translation>
    </message>
    <message numerus="yes">
        <source>%n match(es): untick one to keep it.</source>
        <translation>
            <numerusform>%n 处匹配：取消勾选即可保留</numerusform>
        </translation>
    </message>
    <message>
        <source>Before and after</source>
        <translation>前后对比</translation>
    </message>
    <message>
        <source>Type the words again: the history does not keep them.</source>
        <translation>请重新输入要涂黑的文字：历史记录不会保存它们。</translation>
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
        <source>Choose a folder of PDFs</source>
        <translation>选择存放 PDF 的文件夹</translation>
    </message>
    <message>
        <source>Remove metadata, protect or unprotect with a password, and make scans searchable.</source>
        <translation>移除元数据、用密码保护或解除保护，以及使扫描件的文字可搜索。</translation>
    </message>
    <message numerus="yes">
        <source>Reading the folder… %n file(s) found</source>
        <translation>
            <numerusform>正在读取文件夹… 已找到 %n 个文件</numerusform>
        </translation>
    </message>
    <message>
        <source>Add page numbers, Bates numbers, headers, footers and watermarks as real text or pictures.</source>
        <translation>以真实文字或图片添加页码、贝茨编号、页眉、页脚和水印。</translation>
    </message>
    <message>
        <source>Drop PDFs to stamp</source>
        <translation>拖入要加盖标记的 PDF</translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation>加盖标记</translation>
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
    <message>
        <source>Drawing pages</source>
        <translation>页面绘制</translation>
    </message>
    <message>
        <source> s</source>
        <translation> 秒</translation>
    </message>
    <message>
        <source>No limit</source>
        <translation>不限</translation>
    </message>
    <message>
        <source>Time limit per page:</source>
        <translation>每页时间限制：</translation>
    </message>
    <message>
        <source>A page still drawing after this time is skipped when pages become images, and its preview shows why. Some damaged or hostile files draw for hours.</source>
        <translation>页面转换为图像时，超过此时间仍未绘制完成的页面将被跳过，其预览会说明原因。某些损坏或恶意的文件可能需要绘制数小时。</translation>
    </message>
</context>
<context>
    <name>quillet::SplitView</name>
    <message>
        <source>Split</source>
        <translation>拆分</translation>
    </message>
    <message>
        <source>Page ranges</source>
        <translation>页码范围</translation>
    </message>
    <message>
        <source>Pages per file</source>
        <translation>每个文件的页数</translation>
    </message>
    <message>
        <source>Pages to extract</source>
        <translation>要提取的页面</translation>
    </message>
    <message>
        <source>Largest size of a file</source>
        <translation>单个文件的最大大小</translation>
    </message>
    <message>
        <source>Unit of the size</source>
        <translation>大小单位</translation>
    </message>
    <message>
        <source>Every page</source>
        <translation>每页一个文件</translation>
    </message>
    <message>
        <source>Each page becomes a PDF of its own.</source>
        <translation>每一页单独生成一个 PDF。</translation>
    </message>
    <message>
        <source>Each range becomes a PDF, in the order written.</source>
        <translation>每个范围生成一个 PDF，顺序与输入一致。</translation>
    </message>
    <message>
        <source>Every N pages</source>
        <translation>每 N 页</translation>
    </message>
    <message>
        <source>Runs of N pages; the last PDF holds the rest.</source>
        <translation>每 N 页生成一个 PDF，剩余页面归入最后一个。</translation>
    </message>
    <message>
        <source>Extract pages</source>
        <translation>提取页面</translation>
    </message>
    <message>
        <source>The chosen pages, in page order, in one PDF.</source>
        <translation>将选中的页面按页码顺序放入一个 PDF。</translation>
    </message>
    <message>
        <source>By file size</source>
        <translation>按文件大小</translation>
    </message>
    <message>
        <source>Consecutive pages, each PDF kept under the size.</source>
        <translation>按顺序分组页面，每个 PDF 都不超过设定大小。</translation>
    </message>
    <message>
        <source>%1 is not a PDF: only PDFs can be split.</source>
        <translation>%1 不是 PDF：只能拆分 PDF 文件。</translation>
    </message>
    <message>
        <source>No PDF loaded.</source>
        <translation>尚未载入 PDF。</translation>
    </message>
    <message numerus="yes">
        <source>%1 — %n page(s)</source>
        <translation>
            <numerusform>%1 — %n 页</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 — could not be read: %2</source>
        <translation>%1 — 无法读取：%2</translation>
    </message>
    <message>
        <source>%1 — counting pages…</source>
        <translation>%1 — 正在统计页数…</translation>
    </message>
    <message>
        <source>Drop a PDF above to split it.</source>
        <translation>将 PDF 拖放到上方即可拆分。</translation>
    </message>
    <message>
        <source>Each PDF stays under %1; how many there are depends on the pages.</source>
        <translation>每个 PDF 都不超过 %1；具体数量取决于页面内容。</translation>
    </message>
    <message numerus="yes">
        <source>Makes one PDF of %n page(s).</source>
        <translation>
            <numerusform>将生成一个 %n 页的 PDF。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Makes %n PDF(s).</source>
        <translation>
            <numerusform>将生成 %n 个 PDF。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Only %1 is split; %n other file(s) are left out.</source>
        <translation>
            <numerusform>只拆分 %1；其余 %n 个文件不做处理。</numerusform>
        </translation>
    </message>
    <message>
        <source>Splitting %1: follow it in the queue.</source>
        <translation>正在拆分 %1，可在任务队列中查看进度。</translation>
    </message>
</context>
<context>
    <name>quillet::StampView</name>
    <message>
        <source>Bates number</source>
        <translation>贝茨编号</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Page number</source>
        <translation>页码</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>CONFIDENTIAL</source>
        <translation>机密</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>上移</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>下移</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>上一页</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>下一页</translation>
    </message>
    <message>
        <source>Stamp</source>
        <translation>加盖标记</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>第 %1 页，共 %2 页</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>{n} is the number, {total} the last one.</source>
        <translation>{n} 为页码，{total} 为最后一个页码。</translation>
    </message>
    <message>
        <source>Prefix</source>
        <translation>前缀</translation>
    </message>
    <message>
        <source>Digits</source>
        <translation>位数</translation>
    </message>
    <message>
        <source>Suffix</source>
        <translation>后缀</translation>
    </message>
    <message>
        <source>Numbers run on from one file to the next, in the order loaded.</source>
        <translation>编号按载入顺序在各文件之间连续。</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>选择…</translation>
    </message>
    <message>
        <source>Choose a picture</source>
        <translation>选择图片</translation>
    </message>
    <message>
        <source>Pictures (*.png *.jpg *.jpeg)</source>
        <translation>图片 (*.png *.jpg *.jpeg)</translation>
    </message>
    <message>
        <source> pt</source>
        <translation> 磅</translation>
    </message>
    <message>
        <source>PNG or JPEG</source>
        <translation>PNG 或 JPEG</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>宽度</translation>
    </message>
    <message>
        <source>Pick…</source>
        <translation>选取…</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>颜色</translation>
    </message>
    <message>
        <source>Over the page</source>
        <translation>在页面内容之上</translation>
    </message>
    <message>
        <source>Under the page</source>
        <translation>在页面内容之下</translation>
    </message>
    <message>
        <source>Under the content, a mark shows on pages with a clear background and is hidden under opaque scans.</source>
        <translation>放在内容之下时，标记在透明背景的页面上可见，在不透明的扫描页下会被遮住。</translation>
    </message>
    <message>
        <source>All pages</source>
        <translation>所有页面</translation>
    </message>
    <message>
        <source>Skip the first page</source>
        <translation>跳过第一页</translation>
    </message>
    <message>
        <source>Start at</source>
        <translation>起始编号</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Margin</source>
        <translation>边距</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>字号</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>不透明度</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>旋转</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>图层</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
    <message numerus="yes">
        <source>Stamp %n files</source>
        <translation>
            <numerusform>为 %n 个文件加盖标记</numerusform>
        </translation>
    </message>
    <message>
        <source>Drop a PDF above to see its pages stamped.</source>
        <translation>在上方拖入 PDF，即可预览加盖标记后的页面。</translation>
    </message>
    <message>
        <source>Add a mark: a page number, a Bates number, a text or a picture.</source>
        <translation>请添加标记：页码、贝茨编号、文字或图片。</translation>
    </message>
    <message>
        <source>Drop a PDF above to stamp it.</source>
        <translation>请在上方拖入要加盖标记的 PDF。</translation>
    </message>
    <message numerus="yes">
        <source>Stamping %n file(s): follow it in the queue.</source>
        <translation>
            <numerusform>正在为 %n 个文件加盖标记：可在任务队列中查看进度。</numerusform>
        </translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>左上</translation>
    </message>
    <message>
        <source>Top center</source>
        <translation>上方居中</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>右上</translation>
    </message>
    <message>
        <source>Center</source>
        <translation>正中</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>左下</translation>
    </message>
    <message>
        <source>Bottom center</source>
        <translation>下方居中</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>右下</translation>
    </message>
    <message>
        <source>Drawing the preview…</source>
        <translation>正在绘制预览…</translation>
    </message>
    <message>
        <source>{n} the number, {total} the last one, {date} today, {name} the file name.</source>
        <translation>{n} 为编号，{total} 为最后一个编号，{date} 为今天日期，{name} 为文件名。</translation>
    </message>
</context>
</TS>
