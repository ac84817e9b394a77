<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>ffc::host::CAcquisitionProgress</name>
    <message>
        <source>Acquisition</source>
        <translation>采集</translation>
    </message>
    <message>
        <source>Taking frames: %1</source>
        <translation>正在采集：%1 帧</translation>
    </message>
    <message>
        <source>Taking frames: %1 of %2</source>
        <translation>正在采集：%1 / %2 帧</translation>
    </message>
    <message>
        <source>The window closes when the plug-in is done with the camera.</source>
        <translation>插件结束对相机的操作后，窗口将关闭。</translation>
    </message>
</context>
<context>
    <name>ffc::host::CBlockMapPlot</name>
    <message>
        <source>Block means, % of the mean</source>
        <translation>块均值（占均值的 %）</translation>
    </message>
    <message>
        <source>column, blocks</source>
        <translation>列（块）</translation>
    </message>
    <message>
        <source>line, blocks</source>
        <translation>行（块）</translation>
    </message>
</context>
<context>
    <name>ffc::host::CCameraPanel</name>
    <message>
        <source>Camera</source>
        <translation>相机</translation>
    </message>
    <message>
        <source>C&amp;amera</source>
        <translation>相机(&amp;A)</translation>
    </message>
    <message>
        <source>E&amp;xposure</source>
        <translation>曝光(&amp;X)</translation>
    </message>
    <message>
        <source>&amp;Black level</source>
        <translation>黑电平(&amp;B)</translation>
    </message>
    <message>
        <source>Pixel forma&amp;t</source>
        <translation>像素格式(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>宽度(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>停止(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>开始(&amp;S)</translation>
    </message>
    <message>
        <source>Locked while the camera streams: stop it first</source>
        <translation>相机采集时锁定：请先停止采集</translation>
    </message>
    <message>
        <source>Binning X</source>
        <translation>水平合并</translation>
    </message>
    <message>
        <source>Binning Y</source>
        <translation>垂直合并</translation>
    </message>
    <message>
        <source>Finds the exposure at which the brightest part of the image lies at 70 % of the format's maximum</source>
        <translation>自动寻找曝光时间，使图像最亮处达到格式最大值的 70 %</translation>
    </message>
    <message>
        <source>Frame rate</source>
        <translation>帧率</translation>
    </message>
    <message>
        <source>Offset X</source>
        <translation>X 偏移</translation>
    </message>
    <message>
        <source>Offset Y</source>
        <translation>Y 偏移</translation>
    </message>
    <message>
        <source>To 70 %</source>
        <translation>至 70 %</translation>
    </message>
    <message>
        <source>Gai&amp;n</source>
        <translation>增益(&amp;N)</translation>
    </message>
    <message>
        <source>Hei&amp;ght</source>
        <translation>高度(&amp;G)</translation>
    </message>
</context>
<context>
    <name>ffc::host::CCameraSession</name>
    <message>
        <source>The camera is lost. It is opened again as soon as it answers.</source>
        <translation>相机已断开。一旦应答将重新打开。</translation>
    </message>
    <message>
        <source>The camera sends frames that cannot be received: choose another pixel format.</source>
        <translation>相机发送的图像无法接收：请选择其他像素格式。</translation>
    </message>
    <message>
        <source>No frame for %1 s, though no trigger is on: the camera is lost, or sends nothing.</source>
        <translation>%1 秒没有图像，且没有开启触发：相机已断开或未发送图像。</translation>
    </message>
    <message>
        <source>No frame for %1 s: the camera waits for its trigger. On are: %2.</source>
        <translation>%1 秒没有图像：相机正在等待触发。已开启：%2。</translation>
    </message>
</context>
<context>
    <name>ffc::host::CFeatureEdit</name>
    <message>
        <source>No camera</source>
        <translation>没有相机</translation>
    </message>
    <message>
        <source>This camera has no %1</source>
        <translation>此相机没有 %1</translation>
    </message>
    <message>
        <source>The camera does not let %1 be changed now</source>
        <translation>相机现在不允许更改 %1</translation>
    </message>
    <message>
        <source>%1: %2 is out of range. Enter a number from %3 to %4.</source>
        <translation>%1：%2 超出范围。请输入 %3 到 %4 之间的数值。</translation>
    </message>
    <message>
        <source>%1 is of another kind in this camera: it cannot be set here.</source>
        <translation>此相机的 %1 类型不同：无法在此设置。</translation>
    </message>
    <message>
        <source>%1: the camera refuses the value (%2). Enter another one.</source>
        <translation>%1：相机拒绝该值（%2）。请输入其他值。</translation>
    </message>
</context>
<context>
    <name>ffc::host::CImageView</name>
    <message>
        <source>No image</source>
        <translation>没有图像</translation>
    </message>
</context>
<context>
    <name>ffc::host::CMainWindow</name>
    <message>
        <source>&amp;Look for cameras</source>
        <translation>查找相机(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Restore settings (UserSet0)</source>
        <translation>恢复设置（UserSet0）(&amp;R)</translation>
    </message>
    <message>
        <source>No real camera answers.</source>
        <translation>没有真实相机应答。</translation>
    </message>
    <message>
        <source>This program was built without real cameras.</source>
        <translation>本程序编译时未包含真实相机支持。</translation>
    </message>
    <message>
        <source>The camera has the settings of UserSet0 already.</source>
        <translation>相机已经是 UserSet0 的设置。</translation>
    </message>
    <message>
        <source>The camera has the settings of UserSet0 again:
%1</source>
        <translation>相机已恢复 UserSet0 的设置：
%1</translation>
    </message>
    <message>
        <source>Folder of recorded frames</source>
        <translation>录制图像的文件夹</translation>
    </message>
    <message>
        <source>Flat field</source>
        <translation>平场</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>确定(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Plots</source>
        <translation>图表(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Quality</source>
        <translation>质量(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Flat-field correction...</source>
        <translation>平场校正(&amp;F)...</translation>
    </message>
    <message>
        <source>The plug-in's dialog: dark field, bright field, execute, preview</source>
        <translation>插件对话框：暗场、亮场、执行、预览</translation>
    </message>
    <message>
        <source>&amp;Camera</source>
        <translation>相机(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Start or stop</source>
        <translation>开始或停止(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>C&amp;orrection</source>
        <translation>校正(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Measure...</source>
        <translation>测量(&amp;M)...</translation>
    </message>
    <message>
        <source>Check &amp;drift...</source>
        <translation>检查漂移(&amp;D)...</translation>
    </message>
    <message>
        <source>Save &amp;report...</source>
        <translation>保存报告(&amp;R)...</translation>
    </message>
    <message>
        <source>a new acquisition</source>
        <translation>重新采集</translation>
    </message>
    <message>
        <source>new coefficients were computed</source>
        <translation>重新计算系数</translation>
    </message>
    <message>
        <source>coefficients were loaded from the flash</source>
        <translation>从闪存加载系数</translation>
    </message>
    <message>
        <source>coefficients were loaded from a file</source>
        <translation>从文件加载系数</translation>
    </message>
    <message>
        <source>%1 was not loaded: %2</source>
        <translation>未能加载 %1：%2</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Expose to 70 %</source>
        <translation>曝光至 70 %(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;First steps</source>
        <translation>入门步骤(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Presets</source>
        <translation>预设(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>删除(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Save as...</source>
        <translation>另存为(&amp;S)...</translation>
    </message>
    <message>
        <source>1. Choose the camera, start it, and press "To 70 %" with an evenly lit target before the lens.
2. Press "Flat-field correction...". Cover the lens and acquire the dark field; uncover it and acquire the bright field; press Execute.
3. View &gt; Raw beside corrected shows what has changed; View &gt; Stretch makes small differences visible.
4. Quality &gt; Measure tells how even the image is, from fresh frames, and saves a report.</source>
        <translation>1. 选择相机并启动，将均匀照明的目标置于镜头前，按“至 70 %”。
2. 按“平场校正...”。盖上镜头采集暗场；取下镜头盖采集亮场；然后执行。
3. “视图 &gt; 原始与校正对比”显示校正前后的变化；“视图 &gt; 拉伸”使细微差别可见。
4. “质量 &gt; 测量”用新采集的帧评估图像的均匀程度，并可保存报告。</translation>
    </message>
    <message>
        <source>Frames of this pixel format cannot be judged: choose a mono or Bayer format that is not packed.</source>
        <translation>无法评估此像素格式的帧：请选择未打包的黑白或拜耳格式。</translation>
    </message>
    <message>
        <source>L&amp;oad the last coefficients</source>
        <translation>加载上次的系数(&amp;O)</translation>
    </message>
    <message>
        <source>L&amp;oad the last coefficients (%1)</source>
        <translation>加载上次的系数（%1）(&amp;O)</translation>
    </message>
    <message>
        <source>Name of this camera's settings as they are now</source>
        <translation>相机当前设置的名称</translation>
    </message>
    <message>
        <source>No camera with settings</source>
        <translation>没有可设置的相机</translation>
    </message>
    <message>
        <source>Number of frames</source>
        <translation>帧数</translation>
    </message>
    <message>
        <source>Save &amp;image...</source>
        <translation>保存图像(&amp;I)...</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>保存图像</translation>
    </message>
    <message>
        <source>Save preset</source>
        <translation>保存预设</translation>
    </message>
    <message>
        <source>Save se&amp;quence...</source>
        <translation>保存序列(&amp;Q)...</translation>
    </message>
    <message>
        <source>Save sequence</source>
        <translation>保存序列</translation>
    </message>
    <message>
        <source>Start the camera first: a sequence is saved as its frames come.</source>
        <translation>请先启动相机：序列随帧的到来而保存。</translation>
    </message>
    <message>
        <source>Start the camera first: the exposure is found from its frames.</source>
        <translation>请先启动相机：曝光时间由其帧确定。</translation>
    </message>
    <message>
        <source>The camera did not take all of the preset; set these by hand:
%1</source>
        <translation>相机未接受全部预设；请手动设置以下各项：
%1</translation>
    </message>
    <message>
        <source>The exposure time cannot be changed: switch the camera's own exposure control off.</source>
        <translation>无法更改曝光时间：请关闭相机的自动曝光。</translation>
    </message>
    <message>
        <source>The exposure time cannot be set: %1</source>
        <translation>无法设置曝光时间：%1</translation>
    </message>
    <message>
        <source>The image does not become steady, it is at %1 %: look whether the light changes, then try again.</source>
        <translation>图像不稳定，目前为 %1 %：请检查光源是否变化，然后重试。</translation>
    </message>
    <message>
        <source>The longest exposure reaches %1 % only: add light, or raise the gain.</source>
        <translation>最长曝光也只能达到 %1 %：请增加照明或提高增益。</translation>
    </message>
    <message>
        <source>The shortest exposure still gives %1 %: take light away, or lower the gain.</source>
        <translation>最短曝光仍达到 %1 %：请减少照明或降低增益。</translation>
    </message>
    <message>
        <source>%1
Reference host of the flat-field correction plug-in
Qt %2</source>
        <translation>%1
平场校正插件的参考主机
Qt %2</translation>
    </message>
    <message>
        <source>&amp;Features...</source>
        <translation>相机特征(&amp;F)...</translation>
    </message>
    <message>
        <source>Ma&amp;ke from the acquired frames...</source>
        <translation>用采集的帧制作(&amp;K)...</translation>
    </message>
    <message>
        <source>There is no camera with the plug-in's dialog.</source>
        <translation>没有带插件对话框的相机。</translation>
    </message>
    <message>
        <source>This camera corrects its frames itself: it takes no table of the host's.</source>
        <translation>此相机自行校正其帧：不使用主机的系数表。</translation>
    </message>
    <message>
        <source>The frames have another size or format than the bright field: acquire it again.</source>
        <translation>帧的尺寸或格式与亮场不同：请重新采集亮场。</translation>
    </message>
    <message>
        <source>Acquire a bright field in the plug-in's dialog first.</source>
        <translation>请先在插件对话框中采集亮场。</translation>
    </message>
    <message>
        <source>Weighs every part of the acquired frames by how far it stands out of their noise</source>
        <translation>按采集帧的各部分超出噪声的程度加权</translation>
    </message>
    <message>
        <source>The computation that was cancelled has not ended yet: try again in a moment.</source>
        <translation>已取消的计算尚未结束：请稍后再试。</translation>
    </message>
    <message>
        <source>Make from the acquired frames</source>
        <translation>用采集的帧制作</translation>
    </message>
    <message>
        <source>Weighting the frames</source>
        <translation>正在对帧加权</translation>
    </message>
    <message>
        <source>Save coefficients</source>
        <translation>保存系数</translation>
    </message>
    <message>
        <source>Coefficients (*.ffc)</source>
        <translation>系数 (*.ffc)</translation>
    </message>
</context>
<context>
    <name>ffc::host::CMeasurementGuide</name>
    <message>
        <source>Measure</source>
        <translation>测量</translation>
    </message>
    <message>
        <source>Cover the lens, then press OK.</source>
        <translation>请盖上镜头盖，然后按“确定”。</translation>
    </message>
    <message>
        <source>Uncover the lens and show it the evenly lit target, then press OK.</source>
        <translation>请取下镜头盖并对准均匀照明的目标，然后按“确定”。</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>确定(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ffc::host::CPlotPanel</name>
    <message>
        <source>Row profile</source>
        <translation>行灰度曲线</translation>
    </message>
    <message>
        <source>column, px</source>
        <translation>列（像素）</translation>
    </message>
    <message>
        <source>DN</source>
        <translation>DN</translation>
    </message>
    <message>
        <source>Column profile</source>
        <translation>列灰度曲线</translation>
    </message>
    <message>
        <source>line, px</source>
        <translation>行（像素）</translation>
    </message>
    <message>
        <source>Histogram</source>
        <translation>直方图</translation>
    </message>
    <message>
        <source>pixels</source>
        <translation>像素数</translation>
    </message>
    <message>
        <source>Loc&amp;k plot scales</source>
        <translation>锁定图表刻度(&amp;K)</translation>
    </message>
    <message>
        <source>Profile along the marked line</source>
        <translation>所画线的剖面</translation>
    </message>
    <message>
        <source>Profiles of a corrected image have those of the raw one beside them, dashed</source>
        <translation>在校正图像的剖面旁以虚线显示原始图像的剖面</translation>
    </message>
    <message>
        <source>Ra&amp;w in plots</source>
        <translation>图表含原始(&amp;W)</translation>
    </message>
    <message>
        <source>The plots keep their scales of grey as they are now, so that frames compare</source>
        <translation>图表保持当前的灰度刻度，便于比较各帧</translation>
    </message>
    <message>
        <source>distance, px</source>
        <translation>距离（px）</translation>
    </message>
</context>
<context>
    <name>ffc::host::CQualityPanel</name>
    <message>
        <source>&amp;Measure...</source>
        <translation>测量(&amp;M)...</translation>
    </message>
    <message>
        <source>Check &amp;drift...</source>
        <translation>检查漂移(&amp;D)...</translation>
    </message>
    <message>
        <source>Save &amp;report...</source>
        <translation>保存报告(&amp;R)...</translation>
    </message>
    <message>
        <source>Dark and bright fresh frames, with and without correction</source>
        <translation>用新采集的暗场和亮场图像测量校正前后的效果</translation>
    </message>
    <message>
        <source>A fresh flat with the coefficients in use</source>
        <translation>用新的平场图像检验当前系数</translation>
    </message>
    <message>
        <source>Shading lim&amp;it</source>
        <translation>不均匀度上限(&amp;I)</translation>
    </message>
    <message>
        <source>Unevenness before and after, stretched alike</source>
        <translation>校正前后的不均匀度，相同拉伸</translation>
    </message>
    <message>
        <source>Measured on %1, before %2: measure again.
Then: %3</source>
        <translation>测量于 %1，在“%2”之前：请重新测量。
当时：%3</translation>
    </message>
    <message>
        <source>the frames became %1</source>
        <translation>图像变为 %1</translation>
    </message>
    <message>
        <source>DSNU limit</source>
        <translation>DSNU 限值</translation>
    </message>
    <message>
        <source>PRNU limit</source>
        <translation>PRNU 限值</translation>
    </message>
    <message>
        <source>any</source>
        <translation>任意</translation>
    </message>
</context>
<context>
    <name>ffc::host::CScenePanel</name>
    <message>
        <source>Scene</source>
        <translation>场景</translation>
    </message>
    <message>
        <source>&amp;Lens cap</source>
        <translation>镜头盖(&amp;L)</translation>
    </message>
    <message>
        <source>T&amp;est chart</source>
        <translation>测试图(&amp;E)</translation>
    </message>
    <message>
        <source>Ill&amp;umination</source>
        <translation>照明(&amp;U)</translation>
    </message>
    <message>
        <source>A chart with structure instead of the evenly lit target</source>
        <translation>用有结构的测试图代替均匀目标</translation>
    </message>
    <message>
        <source>The recording has no dark frames</source>
        <translation>录像中没有暗场帧</translation>
    </message>
</context>
<context>
    <name>ffc::host::CStatusLine</name>
    <message>
        <source>%1 frames/s</source>
        <translation>%1 帧/秒</translation>
    </message>
    <message>
        <source>dropped %1</source>
        <translation>丢帧 %1</translation>
    </message>
    <message>
        <source>Camera frames that never came: %1
Frames that came and were not shown, because the display is slower than the camera: %2
Frames received: %3</source>
        <translation>相机丢失的帧：%1
因显示较慢而未显示的帧：%2
已接收的帧：%3</translation>
    </message>
</context>
<context>
    <name>ffc::host::CWaitBox</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
</context>
<context>
    <name>CameraChoice</name>
    <message>
        <source>Recorded: %1</source>
        <translation>录制：%1</translation>
    </message>
    <message>
        <source>%1 (as started)</source>
        <translation>%1（启动时）</translation>
    </message>
    <message>
        <source>Recorded frames...</source>
        <translation>录制的图像...</translation>
    </message>
    <message>
        <source>Simulated, mono</source>
        <translation>模拟黑白相机</translation>
    </message>
    <message>
        <source>Simulated, colour</source>
        <translation>模拟彩色相机</translation>
    </message>
    <message>
        <source>Simulated, corrects flat field itself</source>
        <translation>模拟相机，自带平场校正</translation>
    </message>
    <message>
        <source>Simulated, corrects vignetting itself</source>
        <translation>模拟相机，自带渐晕校正</translation>
    </message>
</context>
<context>
    <name>CorrectionState</name>
    <message>
        <source>frames of the format %1 cannot be corrected, choose a mono or Bayer format</source>
        <translation>%1 格式的图像无法校正，请选择单色或 Bayer 格式</translation>
    </message>
    <message>
        <source>the camera is lost</source>
        <translation>相机已断开</translation>
    </message>
    <message>
        <source>NOT corrected: %1</source>
        <translation>未校正：%1</translation>
    </message>
    <message>
        <source>no frame yet</source>
        <translation>还没有图像</translation>
    </message>
    <message>
        <source>corrected</source>
        <translation>已校正</translation>
    </message>
    <message>
        <source>corrected by the camera</source>
        <translation>已由相机校正</translation>
    </message>
    <message>
        <source>acquisition cancelled, the plug-in still waits for frames</source>
        <translation>采集已取消，插件仍在等待图像</translation>
    </message>
    <message>
        <source>the plug-in is taking frames</source>
        <translation>插件正在采集图像</translation>
    </message>
    <message>
        <source>the frame is %1, the coefficients are for %2: acquire anew or load a file</source>
        <translation>图像为 %1，系数适用于 %2：请重新采集或加载文件</translation>
    </message>
    <message>
        <source>preview is on, but the plug-in wrote no image; acquire and execute again</source>
        <translation>预览已打开，但插件没有输出图像；请重新采集并执行</translation>
    </message>
    <message>
        <source>raw (preview is off)</source>
        <translation>原始图像（预览关闭）</translation>
    </message>
    <message>
        <source>a file is being chosen</source>
        <translation>正在选择文件</translation>
    </message>
</context>
<context>
    <name>BrightField</name>
    <message>
        <source>%1 % of the bright field's samples are clipped: expose for less.</source>
        <translation>亮场中有 %1 % 的采样饱和：请缩短曝光。</translation>
    </message>
    <message>
        <source>The bright field has structure (in %1 % of its blocks): a chart, an object in focus or the edge of a shadow. Show an even surface out of focus.</source>
        <translation>亮场有结构（%1 % 的块）：图表、对焦的物体或阴影边缘。请对着离焦的均匀表面。</translation>
    </message>
    <message>
        <source>The light is unsteady: the bright frames' means differ by %1 %. Use steady light, or expose for whole periods of it.</source>
        <translation>光源不稳定：亮场各帧的均值相差 %1 %。请使用稳定光源，或按光源的整周期曝光。</translation>
    </message>
    <message>
        <source>The light moves: between the first and the second half of the bright frames places change by up to %1 % against each other.</source>
        <translation>光照在移动：亮场前半与后半之间，各处的相对变化最大 %1 %。</translation>
    </message>
</context>
<context>
    <name>FrameCountAdvice</name>
    <message>
        <source>Not enough different frames to tell a frame count.</source>
        <translation>不同的图像太少，无法建议帧数。</translation>
    </message>
    <message>
        <source>No pixel pattern can be seen beneath the noise; take 16 frames.</source>
        <translation>噪声掩盖了固定图案噪声；请采集 16 帧。</translation>
    </message>
    <message>
        <source>One frame is enough: its noise is well below the pixel pattern.</source>
        <translation>1 帧即可：其噪声远低于固定图案噪声。</translation>
    </message>
    <message>
        <source>Even 16 frames add more noise than they remove pattern (break-even at %1); take 16, with more light.</source>
        <translation>即使 16 帧，增加的噪声仍多于消除的固定图案噪声（%1 帧时两者才相等）；请采集 16 帧并增加照明。</translation>
    </message>
    <message>
        <source>Nothing less than %1 frames breaks even; take %1.</source>
        <translation>少于 %1 帧都得不偿失；请采集 %1 帧。</translation>
    </message>
    <message>
        <source>1 frame only breaks even, take %1.</source>
        <translation>1 帧没有收益（增加的噪声与消除的固定图案噪声相等），请采集 %1 帧。</translation>
    </message>
    <message>
        <source>%1 frames only break even, take %2.</source>
        <translation>%1 帧时增加的噪声与消除的固定图案噪声相等，没有收益；请采集 %2 帧。</translation>
    </message>
</context>
<context>
    <name>HtmlReport</name>
    <message>
        <source>before</source>
        <translation>校正前</translation>
    </message>
    <message>
        <source>after</source>
        <translation>校正后</translation>
    </message>
    <message>
        <source>%1: noise of one frame %2 DN, pixel pattern %3 DN, at a mean of %4 DN</source>
        <translation>%1：单帧噪声 %2 DN，固定图案噪声 %3 DN，均值 %4 DN</translation>
    </message>
    <message>
        <source>Clipped by the correction: %1 samples; held at the gain limit: %2 pixels</source>
        <translation>因校正而饱和：%1 个采样；达到增益上限：%2 个像素</translation>
    </message>
    <message>
        <source>The camera corrects: before and after are different exposures</source>
        <translation>由相机校正：校正前后为不同曝光的图像</translation>
    </message>
    <message>
        <source>Flat-field correction: %1</source>
        <translation>平场校正：%1</translation>
    </message>
    <message>
        <source>Figures</source>
        <translation>数据</translation>
    </message>
    <message>
        <source>Findings</source>
        <translation>结论</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>图像</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>校正前</translation>
    </message>
    <message>
        <source>After</source>
        <translation>校正后</translation>
    </message>
    <message>
        <source>Before, unevenness stretched</source>
        <translation>校正前，不均匀度放大显示</translation>
    </message>
    <message>
        <source>After, stretched alike</source>
        <translation>校正后，相同拉伸</translation>
    </message>
    <message>
        <source>Grey along the middle</source>
        <translation>中间行的灰度</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Shading, %</source>
        <translation>不均匀度，%</translation>
    </message>
    <message>
        <source>Corner / centre</source>
        <translation>角/中心</translation>
    </message>
    <message>
        <source>PRNU with shading, %</source>
        <translation>PRNU（含不均匀），%</translation>
    </message>
    <message>
        <source>DSNU with shading, DN</source>
        <translation>DSNU（含不均匀），DN</translation>
    </message>
    <message>
        <source>PRNU, high-pass, %</source>
        <translation>PRNU（高通），%</translation>
    </message>
    <message>
        <source>PRNU of rows, %</source>
        <translation>行 PRNU，%</translation>
    </message>
    <message>
        <source>PRNU of columns, %</source>
        <translation>列 PRNU，%</translation>
    </message>
    <message>
        <source>PRNU of pixels, %</source>
        <translation>像素 PRNU，%</translation>
    </message>
    <message>
        <source>DSNU, high-pass, DN</source>
        <translation>DSNU（高通），DN</translation>
    </message>
    <message>
        <source>Defect pixels: %1 (saving the report writes them as CSV and XML beside it)</source>
        <translation>缺陷像素：%1（保存报告时在旁边写成 CSV 和 XML）</translation>
    </message>
    <message>
        <source>Mean grey, DN</source>
        <translation>平均灰度，DN</translation>
    </message>
    <message>
        <source>Clipped, %</source>
        <translation>饱和，%</translation>
    </message>
    <message>
        <source>Clipped by the correction: %1 samples</source>
        <translation>因校正而饱和：%1 个采样</translation>
    </message>
    <message>
        <source>How it was measured</source>
        <translation>测量条件</translation>
    </message>
    <message>
        <source>Without a correction: how even the image is by itself</source>
        <translation>未校正：图像本身的均匀程度</translation>
    </message>
</context>
<context>
    <name>FreshFrames</name>
    <message>
        <source>Frames of the pixel format 0x%1 cannot be measured.</source>
        <translation>无法测量像素格式为 0x%1 的图像。</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
</context>
<context>
    <name>Measurement</name>
    <message>
        <source>Waiting for the scene</source>
        <translation>等待场景</translation>
    </message>
    <message>
        <source>Start the camera first.</source>
        <translation>请先开始采集。</translation>
    </message>
    <message>
        <source>Waiting for a frame</source>
        <translation>等待图像</translation>
    </message>
    <message>
        <source>Waiting for a corrected frame</source>
        <translation>等待校正后的图像</translation>
    </message>
    <message>
        <source>No corrected frame came. Execute the correction and tick its Preview first.</source>
        <translation>没有校正后的图像。请先执行校正并勾选预览。</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>Measuring dark frames</source>
        <translation>正在测量暗场</translation>
    </message>
    <message>
        <source>Measuring bright frames</source>
        <translation>正在测量亮场</translation>
    </message>
    <message>
        <source>Computing the figures</source>
        <translation>正在计算</translation>
    </message>
    <message>
        <source>Measuring a fresh flat</source>
        <translation>正在测量新的平场图像</translation>
    </message>
    <message>
        <source>Measured on a single frame: its temporal noise cannot be told apart and is in PRNU and DSNU</source>
        <translation>仅在一帧上测量：时间噪声无法分离，已包含在 PRNU 和 DSNU 中</translation>
    </message>
    <message>
        <source>The camera repeats itself: only %1 different frames were measured</source>
        <translation>相机在重复：只测量了 %1 帧不同的图像</translation>
    </message>
    <message>
        <source>The coefficients are another camera's: the pattern of their pixels is not that of the frames</source>
        <translation>系数属于另一台相机：其像素图案与图像不符</translation>
    </message>
    <message>
        <source>There are no dark frames: PRNU and DSNU are not known</source>
        <translation>没有暗场帧：PRNU 与 DSNU 未知</translation>
    </message>
</context>
<context>
    <name>SaveBox</name>
    <message>
        <source>%1 is there already. Replace it?</source>
        <translation>%1 已存在。是否替换？</translation>
    </message>
    <message>
        <source>%1 are there already. Replace them?</source>
        <translation>%1 均已存在。是否替换？</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>替换(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ReportSaving</name>
    <message>
        <source>The window closes when the report is written.</source>
        <translation>报告写完后窗口将关闭。</translation>
    </message>
    <message>
        <source>Save report</source>
        <translation>保存报告</translation>
    </message>
    <message>
        <source>Report (*.html)</source>
        <translation>报告 (*.html)</translation>
    </message>
    <message>
        <source>Writing the report</source>
        <translation>正在写报告</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
</context>
<context>
    <name>ReferenceAdvice</name>
    <message>
        <source>The camera evens out blocks of %1 x %1 pixels: one frame is enough, and the pixels' own pattern stays.</source>
        <translation>相机按 %1 x %1 像素的块校正：1 帧即可，像素自身的图案保留。</translation>
    </message>
    <message>
        <source>The reference of 1 frame is weighted by what stands out of its noise: it makes no image worse, and more frames bring more of the pixel pattern.</source>
        <translation>1 帧的参考按高出噪声的程度加权：不会使图像变差，帧数越多，像素图案保留越多。</translation>
    </message>
    <message>
        <source>The reference of %1 frames is weighted by what stands out of their noise: it makes no image worse, and more frames bring more of the pixel pattern.</source>
        <translation>%1 帧的参考按高出噪声的程度加权：不会使图像变差，帧数越多，像素图案保留越多。</translation>
    </message>
    <message>
        <source>1 frame was used, which is as advised.</source>
        <translation>已使用 1 帧，符合建议。</translation>
    </message>
    <message>
        <source>%1 frames were used, which is as advised.</source>
        <translation>已使用 %1 帧，符合建议。</translation>
    </message>
    <message>
        <source>1 frame was used: its noise leaves %1 % in every image.</source>
        <translation>已使用 1 帧：其噪声在每幅图像中留下 %1 %。</translation>
    </message>
    <message>
        <source>%1 frames were used: their noise leaves %2 % in every image.</source>
        <translation>已使用 %1 帧：其噪声在每幅图像中留下 %2 %。</translation>
    </message>
    <message>
        <source>Bits set the floor, not frames: take 12 bit; %1-bit rounding alone leaves %2 %.</source>
        <translation>下限取决于位深而非帧数：请采用 12 位；仅 %1 位取整就留下 %2 %。</translation>
    </message>
</context>
<context>
    <name>Verdict</name>
    <message>
        <source>Not measured</source>
        <translation>尚未测量</translation>
    </message>
    <message>
        <source>shading of a fresh flat is %1 %</source>
        <translation>新平场图像的不均匀度为 %1 %</translation>
    </message>
    <message>
        <source>shading of a fresh flat is %1 %, it was %2 %</source>
        <translation>新平场图像的不均匀度为 %1 %，原为 %2 %</translation>
    </message>
    <message>
        <source>No drift: %1</source>
        <translation>无漂移：%1</translation>
    </message>
    <message>
        <source>Drifting: %1; acquire anew soon</source>
        <translation>正在漂移：%1；请尽快重新采集</translation>
    </message>
    <message>
        <source>Drifted beyond %1 %: %2; acquire and execute anew</source>
        <translation>漂移超过 %1 %：%2；请重新采集并执行</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%2 的%1</translation>
    </message>
    <message>
        <source>Baseline: %1 %2</source>
        <translation>基准：%1 %2</translation>
    </message>
    <message>
        <source>DSNU</source>
        <translation>DSNU</translation>
    </message>
    <message>
        <source>DSNU high-pass</source>
        <translation>DSNU（高通）</translation>
    </message>
    <message>
        <source>FAIL: %1 %2, limit %3</source>
        <translation>不合格：%1 %2，限值 %3</translation>
    </message>
    <message>
        <source>No limit: %1 %2</source>
        <translation>无限值：%1 %2</translation>
    </message>
    <message>
        <source>Not measured: %1, for want of dark frames</source>
        <translation>未测量：%1，缺少暗场帧</translation>
    </message>
    <message>
        <source>PASS: %1 %2, limit %3</source>
        <translation>合格：%1 %2，限值 %3</translation>
    </message>
    <message>
        <source>PRNU</source>
        <translation>PRNU</translation>
    </message>
    <message>
        <source>PRNU high-pass</source>
        <translation>PRNU（高通）</translation>
    </message>
    <message>
        <source>WORSE: %1 %2, before the correction %3</source>
        <translation>变差：%1 %2，校正前 %3</translation>
    </message>
    <message>
        <source>shading</source>
        <translation>不均匀度</translation>
    </message>
</context>
<context>
    <name>CameraTexts</name>
    <message>
        <source>%1 is the camera's %2.</source>
        <translation>%1 对应相机的 %2。</translation>
    </message>
    <message>
        <source>%1 is always %2: the camera has none.</source>
        <translation>%1 始终为 %2：相机没有该特征。</translation>
    </message>
    <message>
        <source>%1 is kept from the plug-in: %2.</source>
        <translation>%1 对插件隐藏：%2。</translation>
    </message>
    <message>
        <source>%1 is missing, so that no flat field can be taken: %2.</source>
        <translation>缺少 %1，无法采集平场：%2。</translation>
    </message>
    <message>
        <source>%1 incomplete</source>
        <translation>%1 帧不完整</translation>
    </message>
    <message>
        <source>%1 never seen</source>
        <translation>%1 帧从未到达</translation>
    </message>
    <message>
        <source>%1 without a free buffer</source>
        <translation>%1 帧没有空闲缓冲区</translation>
    </message>
    <message>
        <source>%1 given up for newer ones</source>
        <translation>%1 帧让位于更新的帧</translation>
    </message>
    <message>
        <source>%1 in a format that cannot be received</source>
        <translation>%1 帧的格式无法接收</translation>
    </message>
    <message>
        <source>%1 packets missing</source>
        <translation>缺少 %1 个数据包</translation>
    </message>
    <message>
        <source>%1 packets sent again</source>
        <translation>重发 %1 个数据包</translation>
    </message>
    <message>
        <source>Frames lost: %1 (%2)</source>
        <translation>丢失帧：%1（%2）</translation>
    </message>
    <message>
        <source>%1 is guessed. %2</source>
        <translation>%1 为推测值。%2</translation>
    </message>
</context>
<context>
    <name>SideFileCheck</name>
    <message>
        <source>The file beside the coefficients %1 cannot be used: it %2</source>
        <translation>系数文件 %1 的附带文件无法使用：%2</translation>
    </message>
    <message>
        <source>The coefficients %1 were made for %2, but the camera delivers %3.</source>
        <translation>系数文件 %1 适用于 %2，而相机输出 %3。</translation>
    </message>
    <message>
        <source>The coefficients %1 look as if they were made for %2 x %3, but the camera delivers %4 x %5: the image would have stripes.</source>
        <translation>系数 %1 似为 %2 x %3 所制，而相机输出 %4 x %5：图像会出现条纹。</translation>
    </message>
    <message>
        <source>%1 cannot be read again</source>
        <translation>无法重新读取 %1</translation>
    </message>
</context>
<context>
    <name>DialogNote</name>
    <message>
        <source>Coefficients last used with this camera: %1</source>
        <translation>该相机上次使用的系数：%1</translation>
    </message>
    <message>
        <source>Acquisition cancelled. The coefficients from before are kept: tick Preview to use them.</source>
        <translation>采集已取消。原有系数仍然保留：勾选“预览”即可使用。</translation>
    </message>
    <message>
        <source>Acquisition cancelled: no frames were taken over.</source>
        <translation>采集已取消：未采用任何图像。</translation>
    </message>
    <message>
        <source>Only %1 of %2 bright frames differ: the camera repeats itself, and the noise is that of %1.</source>
        <translation>%2 帧亮场图像中只有 %1 帧不同：相机在重复，噪声等同于 %1 帧。</translation>
    </message>
    <message>
        <source>NOT saved: %1 is missing or empty. Is there room on the volume?</source>
        <translation>未保存：%1 不存在或为空。磁盘空间是否足够？</translation>
    </message>
    <message>
        <source>Saved: %1 (%2 bytes)</source>
        <translation>已保存：%1（%2 字节）</translation>
    </message>
    <message>
        <source>NOT loaded: %1</source>
        <translation>未加载：%1</translation>
    </message>
    <message>
        <source>NOT loaded from the camera: %1</source>
        <translation>未能从相机加载：%1</translation>
    </message>
    <message>
        <source>NOT saved: %1</source>
        <translation>未保存：%1</translation>
    </message>
    <message>
        <source>NOT written to the camera: %1. Many cameras write only while their stream is stopped: stop it, and try again.</source>
        <translation>未能写入相机：%1。许多相机只在停止采集流时写入：请先停止，再试一次。</translation>
    </message>
    <message>
        <source>NOT written to the camera: %1</source>
        <translation>未能写入相机：%1</translation>
    </message>
    <message>
        <source>Loaded: %1</source>
        <translation>已加载：%1</translation>
    </message>
    <message>
        <source>Loaded from the camera's flash</source>
        <translation>已从相机闪存加载</translation>
    </message>
    <message>
        <source>Written to the camera, which starts with it from now on</source>
        <translation>已写入相机，今后相机以此启动</translation>
    </message>
    <message>
        <source>The plug-in does not know this camera's correction %1: its dialog is grey.</source>
        <translation>插件不支持该相机的校正方式“%1”：对话框不可用。</translation>
    </message>
</context>
<context>
    <name>CoefficientOrigin</name>
    <message>
        <source>The coefficients come from the file %1</source>
        <translation>系数来自文件 %1</translation>
    </message>
    <message>
        <source>The coefficients come from the camera's flash</source>
        <translation>系数来自相机闪存</translation>
    </message>
    <message>
        <source>How many frames the coefficients were made of is not known</source>
        <translation>系数由多少帧计算而来未知</translation>
    </message>
    <message>
        <source>The coefficients come from %1 different bright frames, although %2 were asked for: the camera repeats itself</source>
        <translation>系数来自 %1 帧不同的亮场图像，而要求为 %2 帧：相机在重复</translation>
    </message>
    <message>
        <source>As the coefficients were acquired: %1</source>
        <translation>采集系数时：%1</translation>
    </message>
</context>
<context>
    <name>NonuniformityReport</name>
    <message>
        <source>below noise</source>
        <translation>低于噪声</translation>
    </message>
</context>
<context>
    <name>Report</name>
    <message>
        <source>% of the mean; DN, the samples' own numbers</source>
        <translation>占平均值的百分比；DN 为采样值本身</translation>
    </message>
    <message>
        <source>%1 % of the samples are clipped by the correction; choose a lower expected grey</source>
        <translation>%1 % 的采样因校正而饱和；请选择较低的期望灰度</translation>
    </message>
    <message>
        <source>%1 bright and %2 dark fresh frames</source>
        <translation>%1 帧新亮场图像和 %2 帧新暗场图像</translation>
    </message>
    <message>
        <source>%1 of 255 (%2 DN)</source>
        <translation>%1 / 255（%2 DN）</translation>
    </message>
    <message>
        <source>, and 1 dark frame</source>
        <translation>，以及 1 帧暗场</translation>
    </message>
    <message>
        <source>, in blocks of %1 x %1</source>
        <translation>，块大小 %1 x %1</translation>
    </message>
    <message>
        <source>, no dark frame</source>
        <translation>，无暗场</translation>
    </message>
    <message>
        <source>; use 16 frames</source>
        <translation>；请使用 16 帧</translation>
    </message>
    <message>
        <source>Coefficient file</source>
        <translation>系数文件</translation>
    </message>
    <message>
        <source>Coefficients</source>
        <translation>系数</translation>
    </message>
    <message>
        <source>DSNU got worse: the camera's gain lifts the dark signal with the light</source>
        <translation>DSNU 变差：相机的增益同时放大了暗信号</translation>
    </message>
    <message>
        <source>DSNU got worse: the coefficients have no dark field, so the gains lift the dark signal with the light; take a dark field first</source>
        <translation>DSNU 变差：系数不含暗场，增益同时放大了暗信号；请先采集暗场</translation>
    </message>
    <message>
        <source>DSNU got worse: the dark reference is one single frame, so its own noise is now in every dark image</source>
        <translation>DSNU 变差：暗场参考只有一帧，其噪声现已进入每幅暗图像</translation>
    </message>
    <message>
        <source>DSNU got worse: the noise of the coefficients' dark field, or the gains, are now in every dark image</source>
        <translation>DSNU 变差：系数中暗场的噪声或增益现已进入每幅暗图像</translation>
    </message>
    <message>
        <source>Expected grey</source>
        <translation>期望灰度</translation>
    </message>
    <message>
        <source>Measured on</source>
        <translation>测量所用</translation>
    </message>
    <message>
        <source>Method</source>
        <translation>方法</translation>
    </message>
    <message>
        <source>PRNU got worse: the bright reference averages only %1 frames, so its own noise is now in every image</source>
        <translation>PRNU 变差：亮场参考仅平均了 %1 帧，其噪声现已进入每幅图像</translation>
    </message>
    <message>
        <source>PRNU got worse: the bright reference is one single frame, so its own noise is now in every image; use 16 frames</source>
        <translation>PRNU 变差：亮场参考只有一帧，其噪声现已进入每幅图像；请使用 16 帧</translation>
    </message>
    <message>
        <source>PRNU got worse: the camera evens out whole blocks, not single pixels</source>
        <translation>PRNU 变差：相机按块而非按像素校正</translation>
    </message>
    <message>
        <source>PRNU got worse: the noise of the frames that the coefficients were made of is now in every image</source>
        <translation>PRNU 变差：生成系数的帧的噪声现已进入每幅图像</translation>
    </message>
    <message>
        <source>PRNU, DSNU after EMVA 1288 Release 4.0: s^2 = s^2_measured - s^2_temporal / L; with shading, and high-pass</source>
        <translation>PRNU、DSNU 依据 EMVA 1288 Release 4.0：s^2 = s^2_measured - s^2_temporal / L；含不均匀与高通两种</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>单位</translation>
    </message>
    <message>
        <source>Versions</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>from 1 bright frame, weighted</source>
        <translation>由 1 帧亮场加权而得</translation>
    </message>
    <message>
        <source>from 1 bright frame</source>
        <translation>由 1 帧亮场而得</translation>
    </message>
    <message>
        <source>from %1 bright frames, weighted</source>
        <translation>由 %1 帧亮场加权而得</translation>
    </message>
    <message>
        <source>, and %1 dark frames</source>
        <translation>，以及 %1 帧暗场</translation>
    </message>
    <message>
        <source>from %1 bright frames, averaged</source>
        <translation>由 %1 帧亮场平均而得</translation>
    </message>
    <message>
        <source>from an unknown number of bright frames</source>
        <translation>由未知数量的亮场帧而得</translation>
    </message>
    <message>
        <source>none: a baseline without correction</source>
        <translation>无：未校正的基准</translation>
    </message>
</context>
<context>
    <name>ffc::host::CRecordingPanel</name>
    <message>
        <source>Bits at</source>
        <translation>有效位</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>录像</translation>
    </message>
    <message>
        <source>Samples</source>
        <translation>采样</translation>
    </message>
    <message>
        <source>Where the bits of a sample stand in 16</source>
        <translation>采样的有效位在 16 位中的位置</translation>
    </message>
    <message>
        <source>as the values show</source>
        <translation>按数值推测</translation>
    </message>
    <message>
        <source>guessed: %1</source>
        <translation>推测：%1</translation>
    </message>
    <message>
        <source>high end (left)</source>
        <translation>高位（左对齐）</translation>
    </message>
    <message>
        <source>low end (right)</source>
        <translation>低位（右对齐）</translation>
    </message>
</context>
<context>
    <name>Appearance</name>
    <message>
        <source>&amp;Dark, as the dialog</source>
        <translation>深色，与对话框一致(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>浅色(&amp;L)</translation>
    </message>
    <message>
        <source>As the des&amp;ktop</source>
        <translation>跟随桌面(&amp;K)</translation>
    </message>
    <message>
        <source>Loo&amp;k</source>
        <translation>外观(&amp;K)</translation>
    </message>
</context>
<context>
    <name>ErrorTexts</name>
    <message>
        <source>A frame of %1 bytes cannot be received.</source>
        <translation>无法接收 %1 字节的帧。</translation>
    </message>
    <message>
        <source>The camera does not answer any more.</source>
        <translation>相机不再响应。</translation>
    </message>
    <message>
        <source>The camera's flash "%1" cannot be written: %2.</source>
        <translation>无法写入相机闪存“%1”：%2。</translation>
    </message>
    <message>
        <source>The camera's flash "%1" is damaged.</source>
        <translation>相机闪存“%1”已损坏。</translation>
    </message>
    <message>
        <source>The file "%1" cannot be read: %2.</source>
        <translation>无法读取文件“%1”：%2。</translation>
    </message>
    <message>
        <source>The folder "%1" has %2 frames in "%3" files; at least %4 are needed (%5).</source>
        <translation>文件夹“%1”中的“%3”文件有 %2 帧；至少需要 %4 帧（%5）。</translation>
    </message>
    <message>
        <source>The recording cannot be played: there is no pixel format "%1".</source>
        <translation>无法播放录制的帧：没有像素格式“%1”。</translation>
    </message>
    <message>
        <source>The simulated camera has no pixel format "%1".</source>
        <translation>模拟相机没有像素格式“%1”。</translation>
    </message>
    <message>
        <source>There is no folder "%1".</source>
        <translation>文件夹“%1”不存在。</translation>
    </message>
    <message>
        <source>There is not enough memory for the camera's frames.</source>
        <translation>内存不足，无法容纳相机的帧。</translation>
    </message>
    <message>
        <source>There is not enough memory for the camera.</source>
        <translation>内存不足，无法打开相机。</translation>
    </message>
    <message>
        <source>There is not enough memory for the recorded frames.</source>
        <translation>内存不足，无法容纳录制的帧。</translation>
    </message>
    <message>
        <source>There is not enough memory for the simulated camera.</source>
        <translation>内存不足，无法打开模拟相机。</translation>
    </message>
    <message>
        <source>the camera does not answer</source>
        <translation>相机没有响应</translation>
    </message>
    <message>
        <source>the camera's pixel format cannot be set</source>
        <translation>无法设置相机的像素格式</translation>
    </message>
    <message>
        <source>this camera has no user set "UserSet0"</source>
        <translation>此相机没有用户设置“UserSet0”</translation>
    </message>
    <message>
        <source>this program was built without support for real cameras</source>
        <translation>此程序在编译时未包含对真实相机的支持</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>The image library does not compute coefficients of these frames.</source>
        <translation>图像库无法用这些帧计算系数。</translation>
    </message>
</context>
<context>
    <name>FrameInspection</name>
    <message>
        <source>Region %1 x %2 px at %3, %4: </source>
        <translation>区域 %1 x %2 px，位于 %3, %4：</translation>
    </message>
    <message>
        <source>mean %1 DN, noise %2, deviation %3 DN</source>
        <translation>均值 %1 DN，噪声 %2，标准差 %3 DN</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>未知</translation>
    </message>
</context>
<context>
    <name>FrameSaving</name>
    <message>
        <source>The window closes when the frames are saved.</source>
        <translation>各帧保存后窗口将关闭。</translation>
    </message>
    <message>
        <source>Frames of this pixel format cannot be saved: choose a mono or Bayer format that is not packed.</source>
        <translation>无法保存此像素格式的帧：请选择未打包的黑白或拜耳格式。</translation>
    </message>
    <message>
        <source>Save sequence</source>
        <translation>保存序列</translation>
    </message>
    <message>
        <source>Saving frames</source>
        <translation>正在保存帧</translation>
    </message>
    <message>
        <source>The disk is slower than the camera: %1 of %2 frames were missed. Save fewer frames, or lower the frame rate.</source>
        <translation>磁盘比相机慢：%2 帧中有 %1 帧未保存。请减少帧数，或降低帧率。</translation>
    </message>
    <message>
        <source>The frames changed their size on the way: save the sequence again.</source>
        <translation>保存过程中帧的尺寸发生变化：请重新保存序列。</translation>
    </message>
</context>
<context>
    <name>Stretch</name>
    <message>
        <source>stretched: black %1 DN, white %2 DN</source>
        <translation>已拉伸：黑 %1 DN，白 %2 DN</translation>
    </message>
</context>
<context>
    <name>ffc::host::CImageArea</name>
    <message>
        <source>&amp;1:1</source>
        <translation>&amp;1:1</translation>
    </message>
    <message>
        <source>&amp;Colour</source>
        <translation>彩色(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>适合窗口(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>移动(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Raw beside corrected</source>
        <translation>原始与校正对比(&amp;R)</translation>
    </message>
    <message>
        <source>Dragging marks a line: its profile stands among the plots. Escape clears it.</source>
        <translation>拖动画线：其剖面显示在图表中。按 Esc 清除。</translation>
    </message>
    <message>
        <source>Dragging marks a region: its mean and noise stand below the image. Escape clears it.</source>
        <translation>拖动画区域：其均值和噪声显示在图像下方。按 Esc 清除。</translation>
    </message>
    <message>
        <source>Dragging moves the image</source>
        <translation>拖动以移动图像</translation>
    </message>
    <message>
        <source>Mark &amp;line</source>
        <translation>画线(&amp;L)</translation>
    </message>
    <message>
        <source>Mark over-&amp;exposed</source>
        <translation>标记过曝(&amp;E)</translation>
    </message>
    <message>
        <source>Mark re&amp;gion</source>
        <translation>画区域(&amp;G)</translation>
    </message>
    <message>
        <source>No raw image beside it: the plug-in does not correct this one.</source>
        <translation>没有可对比的原始图像：插件未校正此图像。</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>放大(&amp;I)</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>缩小(&amp;O)</translation>
    </message>
    <message>
        <source>corrected</source>
        <translation>已校正</translation>
    </message>
    <message>
        <source>raw</source>
        <translation>原始</translation>
    </message>
</context>
<context>
    <name>ffc::host::CInspectionBar</name>
    <message>
        <source>From where on a sample counts as over-exposed, of the format's maximum</source>
        <translation>采样值从格式最大值的多少起算作过曝</translation>
    </message>
    <message>
        <source>Over-exposed: %1 % of the camera's samples</source>
        <translation>过曝：相机采样的 %1 %</translation>
    </message>
    <message>
        <source>Over-exposed: no figures</source>
        <translation>过曝：无数据</translation>
    </message>
    <message>
        <source>corrected: %1
raw: %2</source>
        <translation>已校正：%1
原始：%2</translation>
    </message>
    <message>
        <source>from </source>
        <translation>从 </translation>
    </message>
</context>
<context>
    <name>ffc::host::CToolBar</name>
    <message>
        <source>More tools</source>
        <translation>更多工具</translation>
    </message>
</context>
<context>
    <name>ffc::host::CStretchControl</name>
    <message>
        <source>&amp;Auto</source>
        <translation>自动(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Full range</source>
        <translation>全范围(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Per image</source>
        <translation>逐图(&amp;P)</translation>
    </message>
    <message>
        <source>As Auto, each half of a split view for itself</source>
        <translation>同自动，但对比视图的两半各自拉伸</translation>
    </message>
    <message>
        <source>Black and white are as you set them</source>
        <translation>黑白由您设定</translation>
    </message>
    <message>
        <source>Black and white are the darkest and the brightest greys of each frame</source>
        <translation>以每帧最暗和最亮的灰度为黑白</translation>
    </message>
    <message>
        <source>Black is 0 and white the format's maximum</source>
        <translation>黑为 0，白为格式最大值</translation>
    </message>
    <message>
        <source>Fi&amp;xed</source>
        <translation>固定(&amp;X)</translation>
    </message>
    <message>
        <source>S&amp;tretch</source>
        <translation>拉伸(&amp;T)</translation>
    </message>
    <message>
        <source>Stretch: %1</source>
        <translation>拉伸：%1</translation>
    </message>
    <message>
        <source>Which greys the display shows as black and as white; the frames stay as they are</source>
        <translation>显示时以哪些灰度为黑白；帧本身不变</translation>
    </message>
    <message>
        <source>black </source>
        <translation>黑 </translation>
    </message>
    <message>
        <source>white </source>
        <translation>白 </translation>
    </message>
</context>
<context>
    <name>FigureTable</name>
    <message>
        <source>after</source>
        <translation>校正后</translation>
    </message>
    <message>
        <source>before</source>
        <translation>校正前</translation>
    </message>
</context>
<context>
    <name>ffc::host::CFeatureBrowser</name>
    <message>
        <source>%1
Cannot be written now</source>
        <translation>%1
当前不可写</translation>
    </message>
    <message>
        <source>%1: the camera refuses the value (%2). Enter another one.</source>
        <translation>%1：相机拒绝该值（%2）。请输入其他值。</translation>
    </message>
    <message>
        <source>&amp;Read anew</source>
        <translation>重新读取(&amp;R)</translation>
    </message>
    <message>
        <source>(not available now)</source>
        <translation>（当前不可用）</translation>
    </message>
    <message>
        <source>Feature</source>
        <translation>特征</translation>
    </message>
    <message>
        <source>Features of the camera</source>
        <translation>相机特征</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
</context>
<context>
    <name>ReferenceDialog</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>more than %1</source>
        <translation>超过 %1</translation>
    </message>
    <message>
        <source>the differences of the frames</source>
        <translation>各帧之间的差异</translation>
    </message>
    <message>
        <source>camera data</source>
        <translation>相机数据</translation>
    </message>
    <message>
        <source>photon transfer within the one frame</source>
        <translation>单帧内的光子传递</translation>
    </message>
    <message>
        <source>all fine detail of the one frame: acquire more frames to keep the pixels' own pattern</source>
        <translation>单帧的全部细节：采集更多帧以保留像素自身的图案</translation>
    </message>
    <message>
        <source>half of the fine detail of the one frame: acquire more frames to tell it from the pixels' own pattern</source>
        <translation>这一帧的细节的一半：多采集几帧，才能与像素自身的图案区分开</translation>
    </message>
    <message>
        <source>Made from the acquired frames</source>
        <translation>用采集的帧制作的系数</translation>
    </message>
    <message>
        <source>Plain average</source>
        <translation>普通平均</translation>
    </message>
    <message>
        <source>Weighted</source>
        <translation>加权</translation>
    </message>
    <message>
        <source>Noise that the bright reference leaves in each image</source>
        <translation>亮场参考在每幅图像中留下的噪声</translation>
    </message>
    <message>
        <source>As good as an average of so many frames</source>
        <translation>相当于多少帧的平均</translation>
    </message>
    <message>
        <source>From %1 bright and %2 dark frames. The noise is known from %3. The pattern of the sensor and the noise of the dark field are not in these figures; Measure tells what is left of all.</source>
        <translation>由 %1 帧亮场和 %2 帧暗场制作。噪声取自%3。这些数值不含传感器的图案和暗场的噪声；“测量”给出剩余的全部。</translation>
    </message>
    <message>
        <source>&amp;Save and load...</source>
        <translation>保存并加载(&amp;S)...</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
</context>
</TS>
