// Signs in with the token of the address, and shows whether the plug-in is connected.
const token = new URLSearchParams(location.hash.slice(1)).get("token");
if (token !== null) {
  history.replaceState(null, "", "/");
  await fetch("/console/session", { method: "POST", body: JSON.stringify({ token }) });
}
const answer = await (await fetch("/operator/status")).json();
document.querySelector("#status").textContent = answer.error ?? `${answer.commands} commands`;
