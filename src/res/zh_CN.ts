<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AccountDialogs</name>
    <message>
        <source>The account %1 logged into your device has been forcibly logged out on Orchestrator. For more details, please contact the network administrator.</source>
        <translation>您设备上登录的账号 %1 已在控制器上被强制下线。如需了解详情，请联系网络管理员。</translation>
    </message>
    <message>
        <source>The extension property of your account has changed. Please log in again. If you have any queries, please contact the administrator.</source>
        <translation>您的账号扩展属性已变更，请重新登录。如有疑问，请联系管理员。</translation>
    </message>
</context>
<context>
    <name>AuthenticatorStep</name>
    <message>
        <source>Copied to clipboard</source>
        <translation>已复制到剪贴板</translation>
    </message>
</context>
<context>
    <name>CommonTipsDialog</name>
    <message>
        <source>Confirm</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>ConfirmDialog</name>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>CustomerStep</name>
    <message>
        <source>Agree to privacy policy</source>
        <translation>已同意隐私政策</translation>
    </message>
    <message>
        <source>Failed to get authentication URL: %1 statuscode %2 orch return text %3</source>
        <translation>获取认证地址失败：%1，状态码：%2，控制器返回：%3</translation>
    </message>
    <message>
        <source>Try to get authentication URL again</source>
        <translation>再次尝试获取认证地址</translation>
    </message>
    <message>
        <source>Original URL is </source>
        <translation>原始地址为 </translation>
    </message>
    <message>
        <source>Converted url is </source>
        <translation>转换后的地址为 </translation>
    </message>
</context>
<context>
    <name>DatapathControl</name>
    <message>
        <source>Start connecting</source>
        <translation>开始连接</translation>
    </message>
    <message>
        <source>Stop data path</source>
        <translation>停止数据通道</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>用户名：</translation>
    </message>
    <message>
        <source> Customer ID:</source>
        <translation> 客户 ID：</translation>
    </message>
    <message>
        <source> Serial Number:</source>
        <translation> 序列号：</translation>
    </message>
    <message>
        <source> Connect Mode:Intranet</source>
        <translation> 连接模式：内网模式</translation>
    </message>
    <message>
        <source> Connect Mode:Native</source>
        <translation> 连接模式：普通模式</translation>
    </message>
    <message>
        <source>Waiting for agent to synchronize configuration</source>
        <translation>正在等待 Agent 同步配置</translation>
    </message>
    <message>
        <source>Failed to init dispatch tool</source>
        <translation>流量统计组件初始化失败</translation>
    </message>
</context>
<context>
    <name>DatapathFile</name>
    <message>
        <source>Can not remove </source>
        <translation>无法删除 </translation>
    </message>
    <message>
        <source>Can not open </source>
        <translation>无法打开 </translation>
    </message>
    <message>
        <source>Can not write </source>
        <translation>无法写入 </translation>
    </message>
</context>
<context>
    <name>DialogPrivacy</name>
    <message>
        <source>User Agreement and Privacy Policy</source>
        <translation>用户协议和隐私政策</translation>
    </message>
    <message>
        <source>We respect your privacy. Please read the following to learn more about out User Agreement and Privacy Policy.This Policy explains which personal data we collect and process through interactions with you or your use of our services.&lt;br&gt;&lt;br&gt;The Permissions we will use: Access Device Information, View Network Connections, Full Network Access.&lt;br&gt;Please check our &lt;a style=&quot;color:%1&quot; href=&quot;%2&quot;&gt;User Agreement&lt;/a&gt; and &lt;a style=&quot;color:%3&quot; href=&quot;%4&quot;&gt;Privacy Policy&lt;/a&gt;.</source>
        <translation>我们尊重您的隐私。请阅读以下内容，了解我们的用户协议和隐私政策。本政策说明在您与我们互动或使用我们的服务时，我们会收集和处理哪些个人数据。&lt;br&gt;&lt;br&gt;我们将使用以下权限：读取设备信息、查看网络连接、完全网络访问。&lt;br&gt;请查阅我们的&lt;a style=&quot;color:%1&quot; href=&quot;%2&quot;&gt;《用户协议》&lt;/a&gt;和&lt;a style=&quot;color:%3&quot; href=&quot;%4&quot;&gt;《隐私政策》&lt;/a&gt;。</translation>
    </message>
    <message>
        <source>Decline</source>
        <translation>拒绝</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>同意</translation>
    </message>
</context>
<context>
    <name>DlgBindResult</name>
    <message>
        <source>Your device association request has been received. Please be patient as we process your request. Thank you.</source>
        <translation>您的设备关联申请已收到，请耐心等待处理，谢谢。</translation>
    </message>
    <message>
        <source>Failed to send the device association request. Please try again.</source>
        <translation>设备关联申请发送失败，请重试。</translation>
    </message>
    <message>
        <source>We are currently processing your request to associate your device. Please wait patiently. Thank you for your understanding.</source>
        <translation>您的设备关联申请正在处理中，请耐心等待，感谢您的理解。</translation>
    </message>
    <message>
        <source>Your device is no longer permitted to access Veltaro</source>
        <translation>您的设备已无权访问 Veltaro</translation>
    </message>
</context>
<context>
    <name>DlgChangePassPrompt</name>
    <message>
        <source>Change Password</source>
        <translation>修改密码</translation>
    </message>
    <message>
        <source>Password has been changed,please log in again.</source>
        <translation>密码已修改，请重新登录。</translation>
    </message>
    <message>
        <source>Your password has been successfully reset.Please log in again.</source>
        <translation>您的密码已重置成功，请重新登录。</translation>
    </message>
    <message>
        <source>Password has been reset, please contact the admin to obtain a new password and login again</source>
        <translation>密码已被重置，请联系管理员获取新密码后重新登录</translation>
    </message>
</context>
<context>
    <name>DlgDeviceBind</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Request Association</source>
        <translation>申请关联</translation>
    </message>
    <message>
        <source>Confirm &amp;&amp; Copy</source>
        <translation>确认并复制</translation>
    </message>
    <message>
        <source>You can get access to Veltaro once you associate your device with your Veltaro account. To initiate the binding process, simply click the Request Association button. Please be aware that it may take our network administrator some time to review your request. We appreciate your patience and understanding during this period.</source>
        <translation>将设备与您的 Veltaro 账号关联后即可访问 Veltaro。点击“申请关联”按钮即可提交申请。网络管理员审核需要一些时间，请耐心等待，感谢您的理解。</translation>
    </message>
    <message>
        <source>The software can only be used normally after the current account is successfully bound to the device. Please copy the following information and send it to the network administrator. It will take some time for the network administrator to process, please be patient.</source>
        <translation>当前账号与设备关联成功后才能正常使用本软件。请复制以下信息并发送给网络管理员。网络管理员处理需要一些时间，请耐心等待。</translation>
    </message>
    <message>
        <source>Bind Device</source>
        <translation>关联设备</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>用户名：</translation>
    </message>
    <message>
        <source>Device ID:</source>
        <translation>设备 ID：</translation>
    </message>
    <message>
        <source>Error Info: %1</source>
        <translation>错误信息：%1</translation>
    </message>
</context>
<context>
    <name>DlgForceUpgrade</name>
    <message>
        <source>Release note</source>
        <translation>版本说明</translation>
    </message>
    <message>
        <source>Upgrade</source>
        <translation>立即升级</translation>
    </message>
    <message>
        <source>Discover A New Version V</source>
        <translation>发现新版本 V</translation>
    </message>
    <message>
        <source>Your client is outdated, please update it to the latest version and login again. Notice: You will be automatically logged out once you close current popup box.</source>
        <translation>您的客户端版本过低，请升级到最新版本后重新登录。注意：关闭此弹窗后，您将自动退出登录。</translation>
    </message>
    <message>
        <source>Your client is outdated, please update it to the latest version and login again.</source>
        <translation>您的客户端版本过低，请升级到最新版本后重新登录。</translation>
    </message>
</context>
<context>
    <name>DlgLogin</name>
    <message>
        <source>Version </source>
        <translation>版本 </translation>
    </message>
    <message>
        <source>Continue...</source>
        <translation>继续……</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>继续</translation>
    </message>
    <message>
        <source>Your network may be slow. Still connecting, please wait</source>
        <translation>您的网络可能较慢，仍在连接，请稍候</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Customer ID</source>
        <translation>客户 ID</translation>
    </message>
    <message>
        <source>Enter the customer ID that you received from your administrator.</source>
        <translation>请输入管理员提供给您的客户 ID。</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>欢迎使用</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>记住密码</translation>
    </message>
    <message>
        <source>Auto Login</source>
        <translation>自动登录</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>Forget Password?</source>
        <translation>忘记密码？</translation>
    </message>
    <message>
        <source>Log in</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>Your client is outdated, please update it to the latest version.</source>
        <translation>您的客户端版本过低，请升级到最新版本。</translation>
    </message>
    <message>
        <source>Get privacy version again</source>
        <translation>重新获取隐私政策版本</translation>
    </message>
</context>
<context>
    <name>DlgMain</name>
    <message>
        <source>Home</source>
        <translation>首页</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Send rate</source>
        <translation>发送速率</translation>
    </message>
    <message>
        <source>Receive rate</source>
        <translation>接收速率</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>View All</source>
        <translation>查看全部</translation>
    </message>
    <message>
        <source>Switch Account</source>
        <translation>切换账号</translation>
    </message>
    <message>
        <source>Quit Application</source>
        <translation>退出程序</translation>
    </message>
    <message>
        <source>User </source>
        <translation>用户 </translation>
    </message>
    <message>
        <source> login successful</source>
        <translation> 登录成功</translation>
    </message>
    <message>
        <source>Logs Loaded! Scroll down to view logs for last 15 days</source>
        <translation>日志已加载！向下滚动可查看最近 15 天的日志</translation>
    </message>
    <message>
        <source>Are you sure to stop </source>
        <translation>确定要断开 </translation>
    </message>
    <message>
        <source>Manual stop triggered</source>
        <translation>手动断开连接</translation>
    </message>
    <message>
        <source>Manual cancel triggered</source>
        <translation>手动取消连接</translation>
    </message>
    <message>
        <source> is connected</source>
        <translation> 已连接</translation>
    </message>
    <message>
        <source> is connected. In intranet mode, the tunnel is only established by an intranet CPE</source>
        <translation> 已连接。内网模式下，隧道仅由内网 CPE 建立</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>退出登录</translation>
    </message>
    <message>
        <source>Your network may be slow. Still connecting, please wait</source>
        <translation>您的网络可能较慢，仍在连接，请稍候</translation>
    </message>
    <message>
        <source>A new version is available</source>
        <translation>有新版本可用</translation>
    </message>
    <message>
        <source> ?</source>
        <translation> 吗？</translation>
    </message>
</context>
<context>
    <name>DlgQuit</name>
    <message>
        <source>Quit Application</source>
        <translation>退出程序</translation>
    </message>
    <message>
        <source>Are you sure to quit?</source>
        <translation>确定要退出吗？</translation>
    </message>
</context>
<context>
    <name>DlgSwitchAcc</name>
    <message>
        <source>Switch Account</source>
        <translation>切换账号</translation>
    </message>
    <message>
        <source>Are you sure to switch account?</source>
        <translation>确定要切换账号吗？</translation>
    </message>
    <message>
        <source>This operation will clear the saved password of the current account.</source>
        <translation>此操作将清除当前账号已保存的密码。</translation>
    </message>
</context>
<context>
    <name>DlgUpgrade</name>
    <message>
        <source>Upgrade</source>
        <translation>立即升级</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>稍后</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>跳过此版本</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Discover A New Version V</source>
        <translation>发现新版本 V</translation>
    </message>
    <message>
        <source>Check new version</source>
        <translation>检查新版本</translation>
    </message>
</context>
<context>
    <name>ErrorCatalogue</name>
    <message>
        <source>6002 The connection to Orchestrator server has timed out, please check your network connections.</source>
        <translation>6002 连接控制器超时，请检查您的网络连接。</translation>
    </message>
    <message>
        <source>6003 Domain name of Orchestrator server resolution fails. Please check your network connections.</source>
        <translation>6003 控制器域名解析失败，请检查您的网络连接。</translation>
    </message>
    <message>
        <source>6009 System error(%1). Please contact your network administrator</source>
        <translation>6009 系统错误（%1），请联系您的网络管理员</translation>
    </message>
    <message>
        <source>6009 System error (%1). Please contact your network administrator</source>
        <translation>6009 系统错误（%1），请联系您的网络管理员</translation>
    </message>
    <message>
        <source>6009 System error (%1). Please contact your network administrator.</source>
        <translation>6009 系统错误（%1），请联系您的网络管理员。</translation>
    </message>
    <message>
        <source>6010 Unable to receive the notification of finish sending messages from the server, please check your network connections.</source>
        <translation>6010 未收到服务器的下发完成通知，请检查您的网络连接。</translation>
    </message>
    <message>
        <source>6011 Failed to retrieve an authentication token, please log in again.</source>
        <translation>6011 获取认证令牌失败，请重新登录。</translation>
    </message>
    <message>
        <source>6014 The Orchestrator server returned an invalid or unrecognized response. If there is any proxy server, please close it and try again.</source>
        <translation>6014 控制器返回了无效或无法识别的响应。如果使用了代理服务器，请关闭后重试。</translation>
    </message>
    <message>
        <source>6015 Invalid Customer ID. Please enter again or contact your network administrator</source>
        <translation>6015 客户 ID 无效，请重新输入或联系您的网络管理员</translation>
    </message>
    <message>
        <source>6016 The username cannot exceed the 64 characters in length. Please try again.</source>
        <translation>6016 用户名长度不能超过 64 个字符，请重新输入。</translation>
    </message>
    <message>
        <source>6017 The password cannot exceed the 64 characters in length. Please try again.</source>
        <translation>6017 密码长度不能超过 64 个字符，请重新输入。</translation>
    </message>
    <message>
        <source>6018 Failed to save configuration file, contact your network administrator</source>
        <translation>6018 保存配置文件失败，请联系您的网络管理员</translation>
    </message>
    <message>
        <source>6018 Failed to save Datapath configuration file, please try again.</source>
        <translation>6018 保存数据通道配置文件失败，请重试。</translation>
    </message>
    <message>
        <source>6019 Failed to stop DP(%1)</source>
        <translation>6019 停止数据通道失败（%1）</translation>
    </message>
    <message>
        <source>6021 Failed to load executable file Datapath, please try again.</source>
        <translation>6021 加载数据通道可执行文件失败，请重试。</translation>
    </message>
    <message>
        <source>6022 Network connection error: It appears that all tunnels have been disconnected. Rebuilding a tunnel...</source>
        <translation>6022 网络连接异常：所有隧道均已断开，正在重建隧道……</translation>
    </message>
    <message>
        <source>6023 SMS verification code sent too frequently, please try again 24 hours.</source>
        <translation>6023 短信验证码发送过于频繁，请 24 小时后重试。</translation>
    </message>
    <message>
        <source>6024 Phone number blocked. Contact network administrator to update account info.</source>
        <translation>6024 手机号已被封禁，请联系网络管理员更新账号信息。</translation>
    </message>
    <message>
        <source>6025 Invalid phone number, please contact your network administrator to change the phone number on your account.</source>
        <translation>6025 手机号无效，请联系您的网络管理员修改账号绑定的手机号。</translation>
    </message>
    <message>
        <source>6026 Failed to send SMS authentication code, please try again.(%1).</source>
        <translation>6026 短信验证码发送失败，请重试（%1）。</translation>
    </message>
    <message>
        <source>6027 Authentication information has expired. Please log in again.</source>
        <translation>6027 认证信息已过期，请重新登录。</translation>
    </message>
    <message>
        <source>6029 The connection to the Lookup Server timed out, please check your network connections.</source>
        <translation>6029 连接 Lookup 服务器超时，请检查您的网络连接。</translation>
    </message>
    <message>
        <source>6030 Failed to resolve the domain name of the Lookup Server. Please check your network connections.</source>
        <translation>6030 Lookup 服务器域名解析失败，请检查您的网络连接。</translation>
    </message>
    <message>
        <source>6031 Please enter the 6-digit code from your authenticator.</source>
        <translation>6031 请输入身份验证器中的 6 位验证码。</translation>
    </message>
    <message>
        <source>6032 Orchestrator server has not enable the Forgot Password function yet.</source>
        <translation>6032 控制器尚未启用“忘记密码”功能。</translation>
    </message>
    <message>
        <source>6033 The Orchestrator server returned an invalid or unrecognized response. If there is any proxy server, please close it and try again.</source>
        <translation>6033 控制器返回了无效或无法识别的响应。如果使用了代理服务器，请关闭后重试。</translation>
    </message>
    <message>
        <source>6033 Orch reply: </source>
        <translation>6033 控制器返回： </translation>
    </message>
    <message>
        <source>6034 Orchestrator server is outdated and Forgot Password function may not be available.</source>
        <translation>6034 控制器版本过低，可能不支持“忘记密码”功能。</translation>
    </message>
    <message>
        <source>6037 Please enter your Customer ID, Username and Password.</source>
        <translation>6037 请输入您的客户 ID、用户名和密码。</translation>
    </message>
    <message>
        <source>6037 Please fill in customer ID, username and password.</source>
        <translation>6037 请填写客户 ID、用户名和密码。</translation>
    </message>
    <message>
        <source>6038 Failed to connect Orchestrator server (Error Code 502). If you did not use proxy server, Orchestrator server may be upgrading and please try again later.</source>
        <translation>6038 连接控制器失败（错误码 502）。如果您未使用代理服务器，则控制器可能正在升级，请稍后重试。</translation>
    </message>
    <message>
        <source>6039 Asynchronous authentication timed out, please try again</source>
        <translation>6039 异步认证超时，请重试</translation>
    </message>
    <message>
        <source>6040 Failed to send verification code to your email. Please try again.</source>
        <translation>6040 邮箱验证码发送失败，请重试。</translation>
    </message>
    <message>
        <source>6041 The email address does not exist. Please contact the administrator.</source>
        <translation>6041 邮箱地址不存在，请联系管理员。</translation>
    </message>
    <message>
        <source>6042 Email was not found. Please contact the administrator.</source>
        <translation>6042 未找到邮箱，请联系管理员。</translation>
    </message>
    <message>
        <source>6043 Query timeout: Unable to retrieve the result of the email sending. Please try again later or contact the administrator.</source>
        <translation>6043 查询超时：无法获取邮件发送结果，请稍后重试或联系管理员。</translation>
    </message>
    <message>
        <source>6044 Failed to send verification code to your email. Please try again(%1).</source>
        <translation>6044 邮箱验证码发送失败，请重试（%1）。</translation>
    </message>
    <message>
        <source>6045 Query timeout: Unable to retrieve the result of the SMS sending. Please try again later or contact the administrator.</source>
        <translation>6045 查询超时：无法获取短信发送结果，请稍后重试或联系管理员。</translation>
    </message>
    <message>
        <source>6046 The system is under maintenance, please try again later.</source>
        <translation>6046 系统正在维护，请稍后重试。</translation>
    </message>
    <message>
        <source>6047 Password reset successful. Please login again with your new password.</source>
        <translation>6047 密码重置成功，请使用新密码重新登录。</translation>
    </message>
    <message>
        <source>6050 Invalid token for client login authentication, please log in again</source>
        <translation>6050 客户端登录认证令牌无效，请重新登录</translation>
    </message>
</context>
<context>
    <name>FilterDocument</name>
    <message>
        <source>Mode: inclusive filtering</source>
        <translation>模式：包含过滤</translation>
    </message>
    <message>
        <source>Mode: exclusive filtering</source>
        <translation>模式：排除过滤</translation>
    </message>
    <message>
        <source>Mode: inclusive and exclusive filtering</source>
        <translation>模式：包含过滤和排除过滤</translation>
    </message>
    <message>
        <source>Inclusive filtering </source>
        <translation>包含过滤 </translation>
    </message>
    <message>
        <source>Exclusive filtering </source>
        <translation>排除过滤 </translation>
    </message>
</context>
<context>
    <name>FilterLists</name>
    <message>
        <source>Checking for IP filter configurations</source>
        <translation>正在检查 IP 过滤配置</translation>
    </message>
    <message>
        <source>Loading IP filter configurations</source>
        <translation>正在加载 IP 过滤配置</translation>
    </message>
    <message>
        <source>Latest IP filter configurations, no need for reload</source>
        <translation>IP 过滤配置已是最新，无需重新加载</translation>
    </message>
</context>
<context>
    <name>ForgetPasswordWidget</name>
    <message>
        <source>Customer ID</source>
        <translation>客户 ID</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Submit</source>
        <translation>提交</translation>
    </message>
    <message>
        <source>Forgot Password</source>
        <translation>忘记密码</translation>
    </message>
    <message>
        <source>Enter your username to set a new password with a code that is sent to your phone or mailbox.</source>
        <translation>请输入用户名，验证码将发送到您的手机或邮箱，用于设置新密码。</translation>
    </message>
    <message>
        <source>Unable to reset password due to unconfigured phone number or email. Please contact the administrator to configure.</source>
        <translation>未配置手机号或邮箱，无法重置密码，请联系管理员配置。</translation>
    </message>
    <message>
        <source>Unable to reset password due to unconfigured phone number. Please contact the administrator to configure.</source>
        <translation>未配置手机号，无法重置密码，请联系管理员配置。</translation>
    </message>
    <message>
        <source>Unable to reset password due to unconfigured mailbox. Please contact the administrator to configure.</source>
        <translation>未配置邮箱，无法重置密码，请联系管理员配置。</translation>
    </message>
</context>
<context>
    <name>Heartbeat</name>
    <message>
        <source>The client has received the message from the server for disconnecting to the network.</source>
        <translation>客户端已收到服务器下发的断开网络指令。</translation>
    </message>
    <message>
        <source>The client has received the message from the server for disconnecting to the network.Please refer to the logs for more information.</source>
        <translation>客户端已收到服务器下发的断开网络指令，详情请查看日志。</translation>
    </message>
    <message>
        <source>The client has received the message from the server for connecting to the network again.</source>
        <translation>客户端已收到服务器下发的重新连接网络指令。</translation>
    </message>
    <message>
        <source>The client has received the message from the server for connecting to the network again. Please refer to the logs for more information.</source>
        <translation>客户端已收到服务器下发的重新连接网络指令，详情请查看日志。</translation>
    </message>
    <message>
        <source>Disconnecting due to receiving ORCH notification.</source>
        <translation>收到控制器通知，正在断开连接。</translation>
    </message>
    <message>
        <source>Reconnecting due to receiving ORCH notification.</source>
        <translation>收到控制器通知，正在重新连接。</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>Running in
Intranet Mode</source>
        <translation>当前为
内网模式</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>连接中</translation>
    </message>
    <message>
        <source>Disconnecting</source>
        <translation>断开中</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>断开</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Quantum Encryption Enabled</source>
        <translation>量子加密已启用</translation>
    </message>
    <message>
        <source>PQC Encryption Enabled</source>
        <translation>后量子加密（PQC）已启用</translation>
    </message>
</context>
<context>
    <name>Log</name>
    <message>
        <source>Failed to remove old log file</source>
        <translation>删除旧日志文件失败</translation>
    </message>
</context>
<context>
    <name>LoginRequest</name>
    <message>
        <source>Verification successful</source>
        <translation>验证成功</translation>
    </message>
    <message>
        <source>Get token successfully</source>
        <translation>获取令牌成功</translation>
    </message>
    <message>
        <source>Authorization succeeded</source>
        <translation>授权成功</translation>
    </message>
    <message>
        <source>Verification failed</source>
        <translation>验证失败</translation>
    </message>
    <message>
        <source>Asynchronous authenticatin failed</source>
        <translation>异步认证失败</translation>
    </message>
</context>
<context>
    <name>OrchReply</name>
    <message>
        <source>Error code: %1Error Info: %2 statuscode %3</source>
        <translation>错误码：%1，错误信息：%2，状态码：%3</translation>
    </message>
    <message>
        <source>The server&apos;s reply is too large.</source>
        <translation>服务器返回的数据过大。</translation>
    </message>
</context>
<context>
    <name>OrchUpgradeDialog</name>
    <message>
        <source>Dear customer, we will be performing a scheduled maintenance and upgrade for improved performance on our platform. During this time, your application may have seen a brief drop in connectivity for a while.&lt;br&gt;&lt;br&gt;&lt;b&gt;Maintenance Time&lt;/b&gt;&lt;br&gt;&lt;font color=&quot;%1&quot;&gt;Start time: %2&lt;br&gt;End time: %3&lt;/font&gt;&lt;br&gt;&lt;br&gt;We apologize for the inconvenience, and if possible request that you refrain from using our application to avoid any disruption caused. And we sincerely appreciate your understanding and cooperation. If you have any questions or need assistance during the time, please do not hesitate to contact our technical support team.</source>
        <translation>尊敬的客户，为提升平台性能，我们将进行计划内的维护升级。在此期间，您的应用可能会出现短暂的网络中断。&lt;br&gt;&lt;br&gt;&lt;b&gt;维护时间&lt;/b&gt;&lt;br&gt;&lt;font color=&quot;%1&quot;&gt;开始时间：%2&lt;br&gt;结束时间：%3&lt;/font&gt;&lt;br&gt;&lt;br&gt;给您带来不便，敬请谅解。如有可能，请在此期间暂停使用本应用，以免受到影响。衷心感谢您的理解与配合。如有任何疑问或需要帮助，请随时联系我们的技术支持团队。</translation>
    </message>
    <message>
        <source>Dear customer, we are currently performing a scheduled maintenance and upgrade for improved performance on our platform. During this time, your application may have seen a brief drop in connectivity for a while.&lt;br&gt;&lt;br&gt;&lt;b&gt;Maintenance Time&lt;/b&gt;&lt;br&gt;&lt;font color=&quot;%1&quot;&gt;Start time: %2&lt;br&gt;End time: %3&lt;/font&gt;&lt;br&gt;&lt;br&gt;We apologize for the inconvenience, and if possible request that you refrain from using our application to avoid any disruption caused. And we sincerely appreciate your understanding and cooperation. If you have any questions or need assistance during the time, please do not hesitate to contact our technical support team.</source>
        <translation>尊敬的客户，为提升平台性能，我们正在进行计划内的维护升级。在此期间，您的应用可能会出现短暂的网络中断。&lt;br&gt;&lt;br&gt;&lt;b&gt;维护时间&lt;/b&gt;&lt;br&gt;&lt;font color=&quot;%1&quot;&gt;开始时间：%2&lt;br&gt;结束时间：%3&lt;/font&gt;&lt;br&gt;&lt;br&gt;给您带来不便，敬请谅解。如有可能，请在此期间暂停使用本应用，以免受到影响。衷心感谢您的理解与配合。如有任何疑问或需要帮助，请随时联系我们的技术支持团队。</translation>
    </message>
    <message>
        <source>Maintenance Notifications for App Service</source>
        <translation>应用服务维护通知</translation>
    </message>
    <message>
        <source>Maintenance and Upgrade Notifications for the App System</source>
        <translation>应用系统维护升级通知</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>OtpAuthPage</name>
    <message>
        <source>Binding Authenticator</source>
        <translation>绑定身份验证器</translation>
    </message>
    <message>
        <source>Please download the authenticator (e.g. Tarvelin Authenticator,Microsoft Authenticator, etc.) on your phone, bind the authenticator by scanning the QR code or copying the key.</source>
        <translation>请在手机上下载身份验证器（如 Tarvelin Authenticator、Microsoft Authenticator 等），通过扫描二维码或复制密钥来绑定身份验证器。</translation>
    </message>
    <message>
        <source>View Instructions</source>
        <translation>查看绑定说明</translation>
    </message>
    <message>
        <source>Copy Username</source>
        <translation>复制用户名</translation>
    </message>
    <message>
        <source>Copy the Key</source>
        <translation>复制密钥</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>下一步</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>Scan QR Code</source>
        <translation>扫描二维码</translation>
    </message>
    <message>
        <source>QR code</source>
        <translation>二维码</translation>
    </message>
</context>
<context>
    <name>OtpBaseDlg</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>OtpInstructionDlg</name>
    <message>
        <source>Binding Instructions</source>
        <translation>绑定说明</translation>
    </message>
    <message>
        <source>1. Open the authenticator.
2. Click the plus sign.
3. Choose a way to bind the authenticator.
4. Scan the QR code, or fill in the username and the key.
5. Complete binding, then you can see the 6-digit number as one time password, which will be used later verification process.</source>
        <translation>1. 打开身份验证器。
2. 点击加号。
3. 选择绑定身份验证器的方式。
4. 扫描二维码，或填写用户名和密钥。
5. 绑定完成后，即可看到 6 位数字的一次性密码，用于后续验证。</translation>
    </message>
</context>
<context>
    <name>OtpRecoverCodeDlg</name>
    <message>
        <source>Please copy your recovery codes and save them properly.</source>
        <translation>请复制您的恢复码并妥善保存。</translation>
    </message>
    <message>
        <source>If you lose your phone or have difficulty receiving the one time password, these recovery codes help regain access to your account and each of them is available for one time only, otherwise you will have no access to your account.</source>
        <translation>如果您丢失手机或无法获取一次性密码，可使用恢复码重新登录账号，每个恢复码只能使用一次；没有恢复码，您将无法登录账号。</translation>
    </message>
    <message>
        <source>Recovery codes</source>
        <translation>恢复码</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Copied to clipboard</source>
        <translation>已复制到剪贴板</translation>
    </message>
</context>
<context>
    <name>OtpResetOtpTipDlg</name>
    <message>
        <source>When you lose your phone, you can reset the binding relationship with the authenticator through the recovery code, or contact the network administrator to reset it for you.</source>
        <translation>如果您的手机丢失，可以使用恢复码重置与身份验证器的绑定关系，或联系网络管理员为您重置。</translation>
    </message>
    <message>
        <source>Paste Recovery Code Here</source>
        <translation>在此粘贴恢复码</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>重置</translation>
    </message>
    <message>
        <source>Error Info: %1</source>
        <translation>错误信息：%1</translation>
    </message>
    <message>
        <source>The recovery code should consist of 16 letters and numbers</source>
        <translation>恢复码应由 16 位字母和数字组成</translation>
    </message>
</context>
<context>
    <name>OtpVerifyPage</name>
    <message>
        <source>Please enter the 6-digit authentication numbers shown in authenticator.</source>
        <translation>请输入身份验证器中显示的 6 位验证码。</translation>
    </message>
    <message>
        <source>Verify</source>
        <translation>验证</translation>
    </message>
    <message>
        <source>Lost Your Phone?</source>
        <translation>手机丢失？</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
</context>
<context>
    <name>Session</name>
    <message>
        <source>NOTICE Network restored</source>
        <translation>NOTICE 网络已恢复</translation>
    </message>
    <message>
        <source>Check the DP status and find an exception</source>
        <translation>数据通道状态异常</translation>
    </message>
    <message>
        <source>NOTICE Connected</source>
        <translation>NOTICE 已连接</translation>
    </message>
    <message>
        <source>Reconnecting</source>
        <translation>正在重新连接</translation>
    </message>
    <message>
        <source>Manual connect triggered</source>
        <translation>手动发起连接</translation>
    </message>
    <message>
        <source>Connection canceled during waiting agent</source>
        <translation>等待 Agent 期间，连接已取消</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>已断开连接</translation>
    </message>
    <message>
        <source>Connection canceled during connection orchestrator</source>
        <translation>连接控制器期间，连接已取消</translation>
    </message>
    <message>
        <source>NOTICE Connect event requested successfully</source>
        <translation>NOTICE 连接请求成功</translation>
    </message>
    <message>
        <source>Save data path configuration successfully</source>
        <translation>数据通道配置保存成功</translation>
    </message>
    <message>
        <source>Connection canceled during getting filter</source>
        <translation>获取过滤配置期间，连接已取消</translation>
    </message>
    <message>
        <source>Firewall is enabled, %1 inbound traffic will not pass through the firewall.</source>
        <translation>防火墙已启用，%1 的入站流量将无法通过防火墙。</translation>
    </message>
    <message>
        <source>Firewall is closed</source>
        <translation>防火墙已关闭</translation>
    </message>
    <message>
        <source>The rule for %1 inbound traffic was removed and the rule has been rewritten to restore it.</source>
        <translation>%1 的入站流量规则已被删除，现已重新写入规则予以恢复。</translation>
    </message>
    <message>
        <source>Received DP data</source>
        <translation>收到数据通道消息</translation>
    </message>
    <message>
        <source>Receive disconnect event</source>
        <translation>收到断开连接事件</translation>
    </message>
    <message>
        <source>The assigned virtual IP is </source>
        <translation>分配的虚拟 IP 为 </translation>
    </message>
    <message>
        <source>Connection canceled after receiving agent notification</source>
        <translation>收到 Agent 通知后，连接已取消</translation>
    </message>
</context>
<context>
    <name>TQ::ForceResetPasswordWidget</name>
    <message>
        <source>Enter Old Password</source>
        <translation>请输入旧密码</translation>
    </message>
    <message>
        <source>Enter New Password</source>
        <translation>请输入新密码</translation>
    </message>
    <message>
        <source>Enter New Password Again</source>
        <translation>请再次输入新密码</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Please enter the new password.</source>
        <translation>请输入新密码。</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>修改密码</translation>
    </message>
    <message>
        <source>For the security of your account, please change your initial password.</source>
        <translation>为了您的账号安全，请修改初始密码。</translation>
    </message>
    <message>
        <source>Please enter the old password</source>
        <translation>请输入旧密码</translation>
    </message>
    <message>
        <source>Your password has been changed successfully. Please use your new password to log in.</source>
        <translation>密码修改成功，请使用新密码登录。</translation>
    </message>
</context>
<context>
    <name>TQ::NewPassword</name>
    <message>
        <source>Password mismatch</source>
        <translation>两次输入的密码不一致</translation>
    </message>
    <message>
        <source>The password does not meet the requirements.</source>
        <translation>密码不符合要求。</translation>
    </message>
    <message>
        <source>A password rule of the service cannot be applied here. The service itself checks the password against it.</source>
        <translation>服务器的一条密码规则无法在客户端校验，将由服务器校验。</translation>
    </message>
</context>
<context>
    <name>TQ::PasswordPage</name>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
</context>
<context>
    <name>TQ::ResetPasswordWidget</name>
    <message>
        <source>Phone number</source>
        <translation>手机号</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>邮箱</translation>
    </message>
    <message>
        <source>Authentication Code</source>
        <translation>验证码</translation>
    </message>
    <message>
        <source>Enter Code</source>
        <translation>请输入验证码</translation>
    </message>
    <message>
        <source>New Password</source>
        <translation>新密码</translation>
    </message>
    <message>
        <source>Repeat New Password</source>
        <translation>再次输入新密码</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Please enter the password.</source>
        <translation>请输入密码。</translation>
    </message>
    <message>
        <source>Reset Password</source>
        <translation>重置密码</translation>
    </message>
    <message>
        <source>Verification successful! Please be aware that, the authentication code has been sent to your phone.</source>
        <translation>验证成功！验证码已发送到您的手机，请注意查收。</translation>
    </message>
    <message>
        <source>Verification successful! Please be aware that, the authentication code has been sent to your email.</source>
        <translation>验证成功！验证码已发送到您的邮箱，请注意查收。</translation>
    </message>
    <message>
        <source>You&apos;re sending too many authentication codes. Please try again later.</source>
        <translation>您发送验证码过于频繁，请稍后再试。</translation>
    </message>
    <message>
        <source>Use Email</source>
        <translation>使用邮箱</translation>
    </message>
    <message>
        <source>Use Phone Number</source>
        <translation>使用手机号</translation>
    </message>
    <message>
        <source>Incorrect authentication code.</source>
        <translation>验证码不正确。</translation>
    </message>
    <message>
        <source>Your password has been successfully reset. Please login again.</source>
        <translation>密码重置成功，请重新登录。</translation>
    </message>
</context>
<context>
    <name>TQ::SendCodeButton</name>
    <message>
        <source>Send Code</source>
        <translation>发送验证码</translation>
    </message>
    <message>
        <source>Send Code(%1s)</source>
        <translation>%1 秒后重新发送</translation>
    </message>
</context>
<context>
    <name>TrayIcon</name>
    <message>
        <source>Connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>Open </source>
        <translation>打开 </translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>退出</translation>
    </message>
</context>
<context>
    <name>UpgradeWatch</name>
    <message>
        <source>Failed to check, please try again.</source>
        <translation>检查失败，请重试。</translation>
    </message>
    <message>
        <source>Discover a new version </source>
        <translation>发现新版本 </translation>
    </message>
</context>
<context>
    <name>VerifyNumInputWidget</name>
    <message>
        <source>Authentication code</source>
        <translation>验证码</translation>
    </message>
    <message>
        <source>Digit %1 of %2</source>
        <translation>第 %1 位，共 %2 位</translation>
    </message>
    <message>
        <source>empty</source>
        <translation>空</translation>
    </message>
    <message>
        <source>%1 of %2 digits entered</source>
        <translation>已输入 %1 位，共 %2 位</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
</context>
<context>
    <name>WidgeAbout</name>
    <message>
        <source>Version </source>
        <translation>版本 </translation>
    </message>
    <message>
        <source>Copyright © </source>
        <translation>版权所有 © </translation>
    </message>
    <message>
        <source>Checking for a new version</source>
        <translation>正在检查新版本</translation>
    </message>
    <message>
        <source>&lt;a style=&quot;color:%1&quot; href=&quot;%2&quot;&gt;User Agreement&lt;/a&gt; and &lt;a style=&quot;color:%3&quot; href=&quot;%4&quot;&gt;Privacy Policy&lt;/a&gt;.</source>
        <translation>&lt;a style=&quot;color:%1&quot; href=&quot;%2&quot;&gt;《用户协议》&lt;/a&gt;和&lt;a style=&quot;color:%3&quot; href=&quot;%4&quot;&gt;《隐私政策》&lt;/a&gt;</translation>
    </message>
    <message>
        <source>Discover A New Version </source>
        <translation>发现新版本 </translation>
    </message>
    <message>
        <source>Check failed, please try again</source>
        <translation>检查失败，请重试</translation>
    </message>
    <message>
        <source>Already the Latest Version</source>
        <translation>已是最新版本</translation>
    </message>
</context>
<context>
    <name>WidgeDiagnoseResult</name>
    <message>
        <source>Check Result</source>
        <translation>诊断结果</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Network Normal</source>
        <translation>网络正常</translation>
    </message>
    <message>
        <source>Network Anormaly</source>
        <translation>网络异常</translation>
    </message>
    <message>
        <source>Orchestrator Connected</source>
        <translation>控制器已连接</translation>
    </message>
    <message>
        <source>Orchestrator Not Connected</source>
        <translation>控制器未连接</translation>
    </message>
</context>
<context>
    <name>LogoChecker</name>
    <message>
        <source>Check for custom Logo.</source>
        <translation>检查自定义 Logo。</translation>
    </message>
    <message>
        <source>Orchestrator cannot generate a customized logo resource download URL.</source>
        <translation>控制器无法生成自定义 Logo 的下载地址。</translation>
    </message>
</context>
<context>
    <name>DiagnosisUpload</name>
    <message>
        <source>Get upload URL</source>
        <translation>获取诊断上传地址</translation>
    </message>
    <message>
        <source>Missing URL or Token</source>
        <translation>缺少地址或令牌</translation>
    </message>
    <message>
        <source>Not found diagnosis file</source>
        <translation>未找到诊断文件</translation>
    </message>
    <message>
        <source>Can not open diagnosis file</source>
        <translation>无法打开诊断文件</translation>
    </message>
    <message>
        <source>Failed to get upload URL</source>
        <translation>获取诊断上传地址失败</translation>
    </message>
    <message>
        <source>Upload diagnosis result</source>
        <translation>上传诊断结果</translation>
    </message>
    <message>
        <source>Failed to upload file</source>
        <translation>诊断文件上传失败</translation>
    </message>
    <message>
        <source>Report upload results</source>
        <translation>上报上传结果</translation>
    </message>
    <message>
        <source>Failed to report upload results</source>
        <translation>上报上传结果失败</translation>
    </message>
</context>
<context>
    <name>LogView</name>
    <message>
        <source>Error: %1</source>
        <translation>错误：%1</translation>
    </message>
    <message>
        <source>Warning: %1</source>
        <translation>警告：%1</translation>
    </message>
    <message>
        <source>Notice: %1</source>
        <translation>通知：%1</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
</context>
<context>
    <name>WidgetSetting</name>
    <message>
        <source>Account Information</source>
        <translation>账号信息</translation>
    </message>
    <message>
        <source>Customer ID</source>
        <translation>客户 ID</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>序列号</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>修改密码</translation>
    </message>
    <message>
        <source>Old Password</source>
        <translation>旧密码</translation>
    </message>
    <message>
        <source>New Password</source>
        <translation>新密码</translation>
    </message>
    <message>
        <source>Confirm Password</source>
        <translation>确认密码</translation>
    </message>
    <message>
        <source>Save Changes</source>
        <translation>保存修改</translation>
    </message>
    <message>
        <source>Network Diagnosis</source>
        <translation>网络诊断</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Start the network diagnosis</source>
        <translation>开始网络诊断</translation>
    </message>
    <message>
        <source>The diagnosis is running</source>
        <translation>正在诊断</translation>
    </message>
    <message>
        <source>Old password is a required field</source>
        <translation>请输入旧密码</translation>
    </message>
    <message>
        <source>New password is a required field</source>
        <translation>请输入新密码</translation>
    </message>
    <message>
        <source>Confirm password is a required field</source>
        <translation>请输入确认密码</translation>
    </message>
    <message>
        <source>Password too long. Please enter again.</source>
        <translation>密码过长，请重新输入。</translation>
    </message>
    <message>
        <source>Confirm password and new password are inconsistent</source>
        <translation>确认密码与新密码不一致</translation>
    </message>
</context>
<context>
    <name>WidgetTopPrompt</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>widgeChronometer</name>
    <message>
        <source>Connected time</source>
        <translation>已连接时长</translation>
    </message>
    <message>
        <source>1 day %1:%2:%3</source>
        <translation>1 天 %1:%2:%3</translation>
    </message>
    <message>
        <source>%1 days %2:%3:%4</source>
        <translation>%1 天 %2:%3:%4</translation>
    </message>
</context>
<context>
    <name>DlgPhoneAuth</name>
    <message>
        <source>Send</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Verification</source>
        <translation>验证</translation>
    </message>
    <message>
        <source>Verification Code</source>
        <translation>验证码</translation>
    </message>
    <message>
        <source>SMS sent successfully</source>
        <translation>短信发送成功</translation>
    </message>
    <message>
        <source>%1s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>Please input verification code</source>
        <translation>请输入验证码</translation>
    </message>
    <message>
        <source>The length of URL is 0, Please contact the network administrator</source>
        <translation>URL 长度为 0，请联系网络管理员</translation>
    </message>
    <message>
        <source>Obtained token successfully</source>
        <translation>获取令牌成功</translation>
    </message>
    <message>
        <source>Asynchronous authenticatin failed</source>
        <translation>异步认证失败</translation>
    </message>
</context>
<context>
    <name>SmsStep</name>
    <message>
        <source>Authorization successded</source>
        <translation>授权成功</translation>
    </message>
</context>
</TS>
