<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>QObject</name>
    <message>
        <source>Success</source>
        <translation>操作成功</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>未知错误</translation>
    </message>
    <message>
        <source>Out of memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>Invalid input param</source>
        <translation>输入参数无效</translation>
    </message>
    <message>
        <source>Failure to operation device feature</source>
        <translation>设备功能操作失败</translation>
    </message>
    <message>
        <source>Open file error</source>
        <translation>打开文件失败</translation>
    </message>
    <message>
        <source>Write file error</source>
        <translation>写入文件失败</translation>
    </message>
    <message>
        <source>Read file error</source>
        <translation>读取文件失败</translation>
    </message>
    <message>
        <source>Get buffer time out</source>
        <translation>获取图像超时</translation>
    </message>
    <message>
        <source>Flat field correction error</source>
        <translation>平场校正失败</translation>
    </message>
    <message>
        <source>Current camera is not support  </source>
        <translation>不支持当前相机  </translation>
    </message>
    <message>
        <source>Buffer size is error  </source>
        <translation>缓冲区大小错误  </translation>
    </message>
    <message>
        <source>Recovery user param fail  </source>
        <translation>恢复用户参数失败  </translation>
    </message>
    <message>
        <source>Current ROI is not matching with the coefficient  </source>
        <translation>当前 ROI 与校正系数不匹配  </translation>
    </message>
    <message>
        <source>The pixelformat should be changed to bayer!</source>
        <translation>像素格式应切换为 Bayer 格式！</translation>
    </message>
    <message>
        <source>The pixelformat not implement!</source>
        <translation>不支持该像素格式！</translation>
    </message>
    <message>
        <source>The current device parameters have been modified. Please restore the default parameters and try again!</source>
        <translation>当前设备参数已被修改，请恢复默认参数后重试！</translation>
    </message>
    <message>
        <source>Flat Field Correction Plugin</source>
        <translation>平场校正插件</translation>
    </message>
    <message>
        <source>This plugin can calculate flat field correction coefficient and set the coefficient to device</source>
        <translation>本插件可计算平场校正系数，并将系数设置到设备</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>continue</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>Canel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>ShadingCorrectionDlg</name>
    <message>
        <source>Flat Field Correction Plugin</source>
        <translation>平场校正插件</translation>
    </message>
    <message>
        <source>FFC Data</source>
        <translation>平场校正数据</translation>
    </message>
    <message>
        <source>Acquisition Frame Count</source>
        <translation>采集帧数</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <source>4</source>
        <translation>4</translation>
    </message>
    <message>
        <source>8</source>
        <translation>8</translation>
    </message>
    <message>
        <source>16</source>
        <translation>16</translation>
    </message>
    <message>
        <source>Acquisition of Darkfield Images</source>
        <translation>采集暗场图像</translation>
    </message>
    <message>
        <source>Acquisition of Brightfield Images</source>
        <translation>采集亮场图像</translation>
    </message>
    <message>
        <source>Execute FFC</source>
        <translation>执行平场校正</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>FFC Expected Gray Value</source>
        <translation>平场校正期望灰度值</translation>
    </message>
    <message>
        <source>(0~255)</source>
        <translation>(0~255)</translation>
    </message>
    <message>
        <source>Read/Write FFC Data</source>
        <translation>读取/写入平场校正数据</translation>
    </message>
    <message>
        <source>Read From Device </source>
        <translation>从设备读取 </translation>
    </message>
    <message>
        <source>Write To Device</source>
        <translation>写入设备</translation>
    </message>
    <message>
        <source>Load/Save FFC Data</source>
        <translation>加载/保存平场校正数据</translation>
    </message>
    <message>
        <source>Load File</source>
        <translation>加载文件</translation>
    </message>
    <message>
        <source>Save File</source>
        <translation>保存文件</translation>
    </message>
    <message>
        <source>Prompt Information </source>
        <translation>提示信息 </translation>
    </message>
    <message>
        <source>Prompt information </source>
        <translation>提示信息 </translation>
    </message>
    <message>
        <source>It is demanded to acquire bright field images again for Executing FFC after changing ROI, binning, decimation, mirror of camera</source>
        <translation>更改相机的 ROI、像素合并（Binning）、抽样或镜像设置后，需要重新采集亮场图像，再执行平场校正</translation>
    </message>
</context>
<context>
    <name>CShadingCorrectionDlg</name>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>This operation will save the user sets and set the startup sets to UserSet0</source>
        <translation>此操作会保存用户参数组，并将启动参数组设置为 UserSet0</translation>
    </message>
    <message>
        <source>The dark field image is too bright, the flat field correction will not use the dark field image,this will not affect the flat field correction effect</source>
        <translation>暗场图像过亮，平场校正将不使用暗场图像，这不会影响平场校正效果</translation>
    </message>
    <message>
        <source>The current black level is not the default value, the flat field correction will not use the dark field image,this will not affect the flat field correction effect</source>
        <translation>当前黑电平不是默认值，平场校正将不使用暗场图像，这不会影响平场校正效果</translation>
    </message>
    <message>
        <source>Acquisition of dark field image complete</source>
        <translation>暗场图像采集完成</translation>
    </message>
    <message>
        <source>The bright field image is too dark, it will affect the flat field correction effect,it is recommended to adjust the brightness of the image in the range of 20-250</source>
        <translation>亮场图像过暗，会影响平场校正效果，建议将图像亮度调整到 20-250 范围内</translation>
    </message>
    <message>
        <source>The bright field image is too bright, it will affect the flat field correction effect,it is recommended to adjust the brightness of the image in the range of 20-250</source>
        <translation>亮场图像过亮，会影响平场校正效果，建议将图像亮度调整到 20-250 范围内</translation>
    </message>
    <message>
        <source>Acquisition of bright field images complete</source>
        <translation>亮场图像采集完成</translation>
    </message>
    <message>
        <source>FFC executed successfully</source>
        <translation>平场校正执行成功</translation>
    </message>
    <message>
        <source>Failed to execute FFC</source>
        <translation>平场校正执行失败</translation>
    </message>
    <message>
        <source>Failed to execute FFC. Please Acquired bright filed images and executed FFC again</source>
        <translation>平场校正执行失败，请重新采集亮场图像并再次执行平场校正</translation>
    </message>
</context>
<context>
    <name>CTipsMessageBox</name>
    <message>
        <source>Tips</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
</context>
<context>
    <name>CShadingCorrectionPro_PC</name>
    <message>
        <source>Open FFC</source>
        <translation>打开平场校正文件</translation>
    </message>
    <message>
        <source>Save FFC</source>
        <translation>保存平场校正文件</translation>
    </message>
    <message>
        <source>ini file (*.ffc)</source>
        <translation>ini 文件 (*.ffc)</translation>
    </message>
</context>
<context>
    <name>CShadingCorrectionPro_Dev</name>
    <message>
        <source>Open FFC</source>
        <translation>打开平场校正文件</translation>
    </message>
    <message>
        <source>Save FFC</source>
        <translation>保存平场校正文件</translation>
    </message>
    <message>
        <source>ini file (*.ffc)</source>
        <translation>ini 文件 (*.ffc)</translation>
    </message>
</context>
<context>
    <name>CVignettingCorrectionPro_Dev</name>
    <message>
        <source>Open FFC</source>
        <translation>打开平场校正文件</translation>
    </message>
    <message>
        <source>Save FFC</source>
        <translation>保存平场校正文件</translation>
    </message>
    <message>
        <source>ini file (*.ffc)</source>
        <translation>ini 文件 (*.ffc)</translation>
    </message>
</context>
</TS>
