#include "sim/ControlPage.h"

namespace sim {

QByteArray controlHtml()
{
    return R"html(<!doctype html>
<html lang="en"><head><meta charset="utf-8"><title>Veltaro simulator</title>
<style>
 body { font: 14px/1.4 sans-serif; color: #354052; margin: 24px; max-width: 1000px; }
 h1 { font-size: 18px; } h2 { font-size: 14px; margin: 24px 0 8px; }
 table { border-collapse: collapse; width: 100%; }
 th, td { text-align: left; padding: 4px 8px; border-bottom: 1px solid #d4dfeb; vertical-align: top; }
 td.wide { word-break: break-all; font-family: monospace; font-size: 12px; }
 button, input, select { font: inherit; padding: 4px 8px; margin: 0 4px 4px 0; }
 #violations li { color: #ff5555; } .hint { color: #7f8fa4; }
</style></head><body>
<h1>Veltaro simulator</h1>
<p id="message" class="hint" role="status"></p>
<h2>Accounts</h2><table id="accounts"></table>
<p><select id="who"></select>
<button data-account='{"factor":"none"}'>No second factor</button>
<button data-account='{"factor":"sms"}'>SMS</button>
<button data-account='{"factor":"authenticator"}'>Authenticator, to be bound</button>
<button data-account='{"device":"any"}'>Any device</button>
<button data-account='{"device":"ask"}'>Device, by request</button>
<button data-account='{"device":"hand"}'>Device, by hand</button>
<button data-account='{"mustChange":true}'>Must change password</button>
<button data-account='{"mustChange":false}'>Need not</button>
<button data-account='{"approval":2}'>Needs approval</button>
<button data-account='{"approval":0}'>Needs none</button></p>
<h2>Clients</h2><table id="clients"></table>
<h2>Datapath</h2>
<p><button data-switch='{"datapath":{"tunnels":"up"}}'>Tunnels up</button>
<button data-switch='{"datapath":{"tunnels":"down"}}'>Tunnels down</button>
<label>Send <input id="tx" type="number" value="2" min="0" step="0.5"> Mbit/s</label>
<label>Receive <input id="rx" type="number" value="8" min="0" step="0.5"> Mbit/s</label>
<button id="rates">Set rates</button>
<button data-switch='{"resetDatapath":true}'>All well</button></p>
<p class="hint" id="datapath"></p>
<h2>Situations</h2>
<p><button data-switch='{"well":true}'>Everything well</button></p>
<div id="situations"></div>
<h2>Faults</h2>
<p><label>On <select id="path">
<option>/api/mobile/v1/orchinfo</option><option>primary:/api/mobile/v1/orchinfo</option>
<option>/static/version/privacyversion.json</option><option>/s/mobile/pubkey/obtain</option>
<option>/api/mobile/auth/config</option><option>/api/mobile/v2/auth</option>
<option>/api/mobile/v2/connect</option><option>/api/mobile/v2/disconnect</option>
<option>/api/mobile/v2/heartbeat</option><option>/files/ip-filter.json</option>
<option>/s/mobile/v1/upgrade</option><option>/api/mobile/v2/upgradeNotice</option>
<option>/api/mobile/v2/verification/send</option><option>/api/mobile/smsStatus</option>
<option>/api/mobile/v2/forgotpassword/mode</option><option>/api/mobile/v2/forgotpassword</option>
<option>/api/mobile/v2/Cryptographic/rule</option><option>/api/mobile/v2/resetpassword</option>
<option>/api/mobile/v2/recoverOtpKey</option><option>/api/mobile/v2/binddevice</option>
<option>/api/mobile/v2/log/url</option><option>/files/bundle</option>
<option>/api/mobile/v2/log/result</option></select></label>
<button data-fault='{"status":502}'>502</button>
<button data-fault='{"status":404}'>404</button>
<button data-fault='{"trickleMs":1000,"body":"{\"code\": 0, \"slow\": true}"}'>A byte a second</button>
<button data-fault='{"delayMs":10000}'>10 s late</button>
<button data-fault='{"drop":true}'>Drop</button>
<button data-fault='{"body":"&lt;html&gt;garbage&lt;/html&gt;"}'>Garbage</button>
<button data-fault='{"hugeBytes":33554432}'>32 MB</button>
<button data-switch='{"clearFaults":true}'>All well</button></p>
<p class="hint" id="faults"></p>
<p><button data-switch='{"stop":"primary"}'>Stop primary lookup</button>
<button data-switch='{"start":"primary"}'>Start it</button>
<button data-switch='{"revoke":3}'>Log everybody out</button></p>
<h2>Last diagnosis</h2><p><a href="/sim/bundle" id="bundle"></a> <span class="hint" id="files"></span></p>
<h2>Violations</h2><ul id="violations"></ul>
<h2>Last requests</h2>
<p><button data-switch='{"clear":true}'>Forget</button></p><table id="requests"></table>
<script>
const $ = id => document.getElementById(id);
function row(kind, cells) {
  const tr = document.createElement('tr');
  for (const cell of cells) {
    const td = document.createElement(kind);
    if (String(cell).length > 40) td.className = 'wide';
    td.textContent = cell;
    tr.append(td);
  }
  return tr;
}
function fill(id, head, rows) { $(id).replaceChildren(row('th', head), ...rows.map(r => row('td', r))); }
async function send(command) {
  const reply = await fetch('/sim/switch', {method: 'POST', body: JSON.stringify(command)});
  const result = await reply.json();
  $('message').textContent = result.ok ? 'Done.' : 'Not possible: ' + result.refused.join(', ');
  show();
}
function showSituations(list) {
  const box = $('situations');
  if (box.childElementCount) return;
  const groups = new Map();
  for (const s of list) {
    if (!groups.has(s.group)) {
      const p = document.createElement('p');
      p.textContent = s.group + ': ';
      groups.set(s.group, p);
      box.append(p);
    }
    const button = document.createElement('button');
    button.textContent = s.name;
    button.dataset.switch = JSON.stringify({situation: s.name});
    groups.get(s.group).append(button);
  }
}
async function show() {
  const s = await (await fetch('/sim/state?last=40')).json();
  fill('accounts', ['Customer ID', 'Username', 'Password', 'Logs in', 'Codes'], s.accounts.map(a => [a.customer,
    a.username, a.password, a.remark + (a.asksForDevice ? ' (association asked for)' : ''),
    (a.sentCode ? 'sent ' + a.sentCode : '') + (a.totp ? ' authenticator ' + a.totp : '')]));
  if (!$('who').childElementCount)
    $('who').replaceChildren(...s.accounts.map(a => new Option(a.username)));
  fill('clients', ['Username', 'Serial', 'State', 'Heartbeats', 'Last seen'], s.clients.map(c => [c.username,
    c.serial, !c.valid ? 'logged out' : c.connected ? 'connected' : 'logged in', c.heartbeats, c.lastSeen]));
  $('violations').replaceChildren(...s.violations.map(v => {
    const li = document.createElement('li'); li.textContent = v; return li; }));
  $('bundle').textContent = s.bundle.bytes ? s.bundle.name : '';
  $('files').textContent = s.bundle.name ? s.bundle.bytes + ' bytes, ' + s.bundle.files.join(' ') : 'none';
  $('faults').textContent = Object.keys(s.faults).join(', ') || 'none';
  showSituations(s.situations);
  $('datapath').textContent = JSON.stringify(s.datapath);
  fill('requests', ['Time', 'Server', 'Request', 'Body'], s.requests.reverse().map(r =>
    [r.time.slice(11), r.server, r.method + ' ' + r.path, r.body.slice(0, 300)]));
}
document.addEventListener('click', event => {
  const data = event.target.dataset;
  if (data.switch) send(JSON.parse(data.switch));
  if (data.account) send({account: {username: $('who').value, ...JSON.parse(data.account)}});
  if (data.fault) send({fault: {path: $('path').value, ...JSON.parse(data.fault)}});
});
$('rates').onclick = () => send({datapath: {tx_bps: Math.round($('tx').value * 1e6),
  rx_bps: Math.round($('rx').value * 1e6)}});
show();
setInterval(show, 2000);
</script></body></html>
)html";
}

} // namespace sim
