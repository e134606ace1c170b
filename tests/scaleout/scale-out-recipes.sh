#!/usr/bin/env bash
# scale-out-recipes.sh QUILLET CORPUS_DIR: runs the two GNU parallel recipes of docs/scale-out.md,
# taken from the page and run as it prints them, over real SSH, and checks the page's Kubernetes
# manifests.
#
# The SSH side is a private sshd on 127.0.0.1, on a free port, with its own host key, user key,
# config and log in a temporary folder; nothing of the machine's own SSH setup is used or changed.
# The hosts file is the page's, with its logins mapped onto that sshd: remote hosts become
# "worker1", the local machine's "localhost" stays, so the one login is named twice. The client
# side reaches it through PARALLEL_SSH="ssh -F <private config>": parallel uses PARALLEL_SSH for
# its jobs and hands the same command to rsync, so the page's commands stay as printed and no
# program on PATH is shadowed; the private config shares one connection among the jobs. The
# sessions get PATH (a folder holding a `quillet` link to the program under test first) and HOME
# (a temporary folder, so the account's shell start-up files are not read) from sshd's SetEnv,
# along with the sanitizer options of a sanitized build.
#
# The page's /data is this test's own folder (and a pod's /tmp another): the only change made to
# the page's commands.
# Exit 77 (skipped) when a tool is missing or sshd cannot start here.
set -euo pipefail

usage="usage: scale-out-recipes.sh QUILLET CORPUS_DIR"
quillet=$(realpath "${1:?$usage}")
corpus=$(realpath "${2:?$usage}")
page=$(cd "$(dirname "$0")/../.." && pwd)/docs/scale-out.md
if [[ ! -f $corpus/001-trivial/minimal-document.pdf ]]; then
    echo "FAIL: no sample corpus in $corpus"
    exit 1
fi

skip() {
    echo "SKIPPED: $*"
    exit 77
}
failed=0
fail() {
    echo "FAIL: $*"
    failed=1
}

sshd=$(command -v sshd || echo /usr/sbin/sshd)
[[ -x $sshd ]] || skip "sshd is not installed (scripts/install-deps.sh installs openssh-server)"
for tool in ssh ssh-keygen parallel rsync jq qpdf timeout; do
    command -v "$tool" >/dev/null ||
        skip "$tool is not installed (scripts/install-deps.sh installs it)"
done
python=""
for candidate in python3 /usr/bin/python3; do
    if "$candidate" -c 'import yaml' 2>/dev/null; then python=$candidate; break; fi
done
[[ -n $python ]] ||
    skip "python3 with yaml is missing (scripts/install-deps.sh installs python3-yaml)"

user=$(id -un)
# sshd starts every session in the account's home from the password database, so parallel's
# `--workdir ...` folders (.parallel/tmp/...) are made there.
login_home=$(getent passwd "$user" | cut -d: -f6)
workdirs_before=$(ls -A "$login_home/.parallel/tmp" 2>/dev/null || true)
had_parallel_folder=0
[[ -e $login_home/.parallel ]] && had_parallel_folder=1

tmp=$(mktemp -d)
sshd_pid=""
made_privsep_folder=0
stop_sshd() {
    if [[ -n $sshd_pid ]]; then
        # The shared connection ssh keeps open for the jobs (ControlPersist), and its session.
        for host in worker1 localhost; do
            ssh -F "$tmp/ssh/config" -O exit "$host" >/dev/null 2>&1 || true
        done
        kill "$sshd_pid" 2>/dev/null || true
        wait "$sshd_pid" 2>/dev/null || true
        sshd_pid=""
    fi
}
cleanup() {
    stop_sshd
    if ((made_privsep_folder)); then rmdir /run/sshd 2>/dev/null || true; fi
    if ((!had_parallel_folder)); then
        rmdir "$login_home/.parallel/tmp" "$login_home/.parallel" 2>/dev/null || true
    fi
    rm -rf "$tmp"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP

# --- The private sshd and its login -------------------------------------------------------------

mkdir -p "$tmp/ssh" "$tmp/bin" "$tmp/home" "$tmp/parallel-home"
ln -s "$quillet" "$tmp/bin/quillet"
ssh-keygen -q -t ed25519 -N '' -C quillet-test-host -f "$tmp/ssh/host_key"
ssh-keygen -q -t ed25519 -N '' -C quillet-test-user -f "$tmp/ssh/user_key"
cp "$tmp/ssh/user_key.pub" "$tmp/ssh/authorized_keys"
echo "quillet-test-sshd $(cat "$tmp/ssh/host_key.pub")" >"$tmp/ssh/known_hosts"

session_env=("PATH=$tmp/bin:/usr/local/bin:/usr/bin:/bin" "HOME=$tmp/home")
for name in ASAN_OPTIONS LSAN_OPTIONS UBSAN_OPTIONS; do
    [[ -n ${!name:-} ]] && session_env+=("$name=${!name}")
done
setenv=""
for assignment in "${session_env[@]}"; do setenv+=" \"$assignment\""; done

# A root sshd wants its privilege separation folder, which the system makes at boot.
if [[ $(id -u) -eq 0 && ! -d /run/sshd ]]; then
    mkdir -m 0755 /run/sshd 2>/dev/null && made_privsep_folder=1
fi

start_sshd() {
    local port
    port=$("$python" -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0))
print(s.getsockname()[1])')
    cat >"$tmp/ssh/sshd_config" <<EOF
ListenAddress 127.0.0.1
Port $port
HostKey $tmp/ssh/host_key
PidFile $tmp/ssh/sshd.pid
AuthorizedKeysFile $tmp/ssh/authorized_keys
AuthenticationMethods publickey
PasswordAuthentication no
KbdInteractiveAuthentication no
PermitRootLogin prohibit-password
AllowUsers $user
StrictModes no
UsePAM no
MaxStartups 100
SetEnv$setenv
EOF
    cat >"$tmp/ssh/config" <<EOF
Host worker1 localhost
    HostName 127.0.0.1
    Port $port
    User $user
    IdentityFile $tmp/ssh/user_key
    IdentitiesOnly yes
    HostKeyAlias quillet-test-sshd
    UserKnownHostsFile $tmp/ssh/known_hosts
    GlobalKnownHostsFile /dev/null
    StrictHostKeyChecking yes
    BatchMode yes
    ControlMaster auto
    ControlPath $tmp/ssh/mux-%C
    ControlPersist 60
    LogLevel ERROR
EOF
    : >"$tmp/ssh/sshd.log"
    # timeout: should this script be killed before its trap runs, sshd still ends.
    timeout 900 "$sshd" -D -f "$tmp/ssh/sshd_config" -E "$tmp/ssh/sshd.log" \
        2>>"$tmp/ssh/sshd.log" &
    sshd_pid=$!
    for _ in $(seq 50); do
        grep -q 'Server listening' "$tmp/ssh/sshd.log" && return 0
        kill -0 "$sshd_pid" 2>/dev/null || break
        sleep 0.2
    done
    stop_sshd
    return 1
}
started=0
for _ in 1 2 3; do # the free port may be taken between the look-up and sshd's bind
    if start_sshd; then started=1; break; fi
done
if ((!started)); then
    why=$(tail -n 3 "$tmp/ssh/sshd.log" | tr '\n' ' ')
    skip "$sshd could not start a server on 127.0.0.1: ${why:-it ended without a message}"
fi

export PARALLEL_SSH="ssh -F $tmp/ssh/config"
export PARALLEL_HOME="$tmp/parallel-home" # the driving side's own state
export PATH="$tmp/bin:$PATH"                # Quillet is installed on the driving machine too
for host in worker1 localhost; do
    if ! found=$($PARALLEL_SSH "$host" 'command -v quillet' 2>"$tmp/ssh/login.err"); then
        why="$(cat "$tmp/ssh/login.err") $(tail -n 3 "$tmp/ssh/sshd.log")"
        skip "sshd started but the login to it failed here: $(tr '\n' ' ' <<<"$why")"
    fi
    [[ $found == "$tmp/bin/quillet" ]] || { echo "FAIL: $host runs quillet from '$found'"; exit 1; }
done

# --- The page's blocks --------------------------------------------------------------------------

# block LANG TEXT: the one fenced LANG block of the page that contains TEXT.
block() {
    awk -v lang="$1" -v text="$2" '
        !inside && $0 == "```" lang { inside = 1; body = ""; next }
        inside && $0 == "```" {
            inside = 0
            if (index(body, text)) { found++; hit = body }
            next
        }
        inside { body = body $0 "\n" }
        END { if (found != 1) exit 1; printf "%s", hit }' "$page"
}
page_block() { # page_block NAME LANG TEXT DATA_FOLDER: writes the block, /data -> DATA_FOLDER
    block "$2" "$3" | sed "s#/data\\b#$4#g" >"$tmp/$1" ||
        { echo "FAIL: no single $2 block with '$3' in docs/scale-out.md"; exit 1; }
}

# The hosts file: the page's, each login mapped onto the private sshd ("localhost" stays
# "localhost", any other login becomes "worker1", ":" stays ":"), two jobs at once on each.
hosts=$(block sh 'cat > hosts.txt' | sed '1d;$d' | awk -F/ '
    { login = $NF; print "2/" (login == ":" || login == "localhost" ? login : "worker1") }' |
    sort -u) || { echo "FAIL: no hosts block in docs/scale-out.md"; exit 1; }
[[ -n $hosts ]] || { echo "FAIL: the page's hosts block lists no host"; exit 1; }

# The inputs: nested folders, two files named report.pdf, one name with a space.
make_inputs() { # make_inputs DATA_FOLDER
    local in=$1/in
    mkdir -p "$in/2023" "$in/2024/q1" "$in/scans/old"
    cp "$corpus/001-trivial/minimal-document.pdf" "$in/minimal-document.pdf"
    cp "$corpus/002-trivial-libre-office-writer/002-trivial-libre-office-writer.pdf" \
        "$in/2023/report.pdf"
    cp "$corpus/004-pdflatex-4-pages/pdflatex-4-pages.pdf" "$in/2024/q1/report.pdf"
    cp "$corpus/003-pdflatex-image/pdflatex-image.pdf" "$in/scans/pdflatex-image.pdf"
    cp "$corpus/006-pdflatex-outline/pdflatex-outline.pdf" "$in/scans/old/outline notes.pdf"
    echo "$hosts" >"$1/hosts.txt"
}
inputs=(minimal-document.pdf 2023/report.pdf 2024/q1/report.pdf scans/pdflatex-image.pdf
        "scans/old/outline notes.pdf")
# The inputs and their -compressed outputs, sorted as listing() sorts.
with_outputs() {
    for f in "${inputs[@]}"; do echo "$f"; echo "${f%.pdf}-compressed.pdf"; done | LC_ALL=C sort
}
pages() { qpdf --show-npages "$1" 2>/dev/null || echo "unreadable"; }
valid_pdf() { # exit 0 or 3 (warnings only)
    local status=0
    qpdf --check "$1" >/dev/null 2>&1 || status=$?
    ((status == 0 || status == 3))
}
# check_joblog LOG COUNT: COUNT jobs, each run on a host of the hosts file, each with exit 0.
check_joblog() {
    [[ -f $1 ]] || { fail "no job log $1"; return; }
    local lines bad
    lines=$(awk -F'\t' 'NR > 1' "$1" | wc -l)
    ((lines == $2)) || fail "$1 has $lines jobs, expected $2"
    bad=$(awk -F'\t' -v hosts="$(sed 's#^[0-9]*/##' <<<"$hosts" | tr '\n' ' ')" '
        BEGIN { split(hosts, list, " "); for (i in list) known[list[i]] = 1 }
        NR > 1 && (!($2 in known) || $7 != 0 || $8 != 0)' "$1")
    [[ -z $bad ]] || fail "$1: jobs on an unknown host or not exiting 0:
$bad"
}
# Every file under FOLDER (hidden ones included), relative, sorted.
listing() { (cd "$1" && find . -type f -printf '%P\n' | LC_ALL=C sort); }

start=$(date +%s)

# --- Files sent to the hosts and back -----------------------------------------------------------

failed_before=$failed
data=$tmp/transfer
make_inputs "$data"
page_block transfer.sh sh '--transferfile' "$data"
(cd "$data" && sh -e "$tmp/transfer.sh") >"$tmp/transfer.out" 2>&1 ||
    fail "the transfer recipe failed"
if grep -q 'not returned' "$tmp/transfer.out"; then
    fail "the recipe's own check: $(grep 'not returned' "$tmp/transfer.out")"
fi
expected=$(with_outputs)
actual=$(listing "$data/in")
[[ $actual == "$expected" ]] ||
    fail "transfer: files beside the inputs differ from inputs + -compressed outputs:
$(diff <(echo "$expected") <(echo "$actual") || true)"
for f in "${inputs[@]}"; do
    out="$data/in/${f%.pdf}-compressed.pdf"
    [[ -f $out ]] || continue
    valid_pdf "$out" || fail "transfer: $out does not pass qpdf --check"
    [[ $(pages "$out") == $(pages "$data/in/$f") ]] ||
        fail "transfer: $out has $(pages "$out") pages, its input $(pages "$data/in/$f")"
done
check_joblog "$data/run.log" "${#inputs[@]}"
((failed == failed_before)) || { echo "the transfer recipe's output:"; cat "$tmp/transfer.out"; }
echo "transfer recipe: $(($(date +%s) - start)) s"

# --- quillet job files on a shared folder -------------------------------------------------------

start=$(date +%s)
failed_before=$failed
data=$tmp/shared
make_inputs "$data"
page_block make-specs.sh sh '#!/bin/sh' "$data"
cp "$tmp/make-specs.sh" "$data/make-specs.sh"
chmod +x "$data/make-specs.sh"
page_block shared.sh sh 'quillet job {}' "$data"
(cd "$data" && sh -e "$tmp/shared.sh") >"$tmp/shared.out" 2>&1 ||
    fail "the shared-folder recipe failed"
# One output per input, the two report.pdf as report-compressed.pdf and report-compressed-2.pdf,
# no hidden temporary file left; nothing written beside the inputs.
expected=$(printf '%s\n' minimal-document-compressed.pdf report-compressed.pdf \
    report-compressed-2.pdf pdflatex-image-compressed.pdf "outline notes-compressed.pdf" |
    LC_ALL=C sort)
actual=$(listing "$data/out" 2>/dev/null || true)
[[ $actual == "$expected" ]] ||
    fail "shared: out/ differs from the expected names:
$(diff <(echo "$expected") <(echo "$actual") || true)"
[[ $(listing "$data/in") == $(printf '%s\n' "${inputs[@]}" | LC_ALL=C sort) ]] ||
    fail "shared: files appeared beside the inputs: $(listing "$data/in" | tr '\n' ' ')"
# Each output has its input's pages (the two reports, 1 and 4 pages, in either order).
want=$(for f in "${inputs[@]}"; do b=${f##*/}; echo "${b%.pdf} $(pages "$data/in/$f")"; done | sort)
got=$(for f in "$data"/out/*.pdf; do
    b=${f##*/}; b=${b%.pdf}; b=${b%-2}; echo "${b%-compressed} $(pages "$f")"
    valid_pdf "$f" || echo "invalid $f"
done | sort)
[[ $got == "$want" ]] ||
    fail "shared: outputs and inputs differ: $(diff <(echo "$want") <(echo "$got") || true)"
shards=$(find "$data/specs" -name "shard-*.json" 2>/dev/null | wc -l)
((shards > 0)) || fail "shared: make-specs.sh wrote no job files"
check_joblog "$data/run.log" "$shards"
((failed == failed_before)) || { echo "the shared-folder recipe's output:"; cat "$tmp/shared.out"; }
echo "shared-folder recipe ($shards job files): $(($(date +%s) - start)) s"

# --- Nothing left in the hosts' work folders ----------------------------------------------------

workdirs_after=$(ls -A "$login_home/.parallel/tmp" 2>/dev/null || true)
[[ $workdirs_after == "$workdirs_before" ]] ||
    fail "work folders left on the host in $login_home/.parallel/tmp: $(comm -13 \
        <(echo "$workdirs_before") <(echo "$workdirs_after") | tr '\n' ' ')"
stop_sshd

# --- The Kubernetes manifests -------------------------------------------------------------------

start=$(date +%s)
pod=$tmp/pod
mkdir -p "$pod"
block yaml 'kind: Job' >"$tmp/job.yaml" || fail "no single yaml block with the Job in the page"
# Checks what an indexed Job over a shared claim needs; writes out the pods' script.
cat >"$tmp/check-manifests.py" <<'EOF'
import sys, yaml

docs = [d for d in yaml.safe_load_all(open(sys.argv[1])) if d is not None]
kinds = [(d.get("apiVersion"), d.get("kind")) for d in docs]
if kinds != [("v1", "PersistentVolumeClaim"), ("batch/v1", "Job")]:
    sys.exit(f"documents are {kinds}, expected a PersistentVolumeClaim and a batch/v1 Job")
claim, job = docs
spec, pod = job["spec"], job["spec"]["template"]["spec"]
(container,) = pod["containers"]
volumes = {v["name"]: v["persistentVolumeClaim"]["claimName"] for v in pod["volumes"]}
env = {e["name"]: e.get("value") for e in container.get("env", [])}
problems = [what for ok, what in [
    ("ReadWriteMany" in claim["spec"]["accessModes"], "the claim is not ReadWriteMany"),
    (spec.get("completionMode") == "Indexed", "completionMode is not Indexed"),
    (str(spec.get("completions")) == env.get("SHARDS"), "SHARDS differs from completions"),
    (pod.get("restartPolicy") in ("Never", "OnFailure"), "restartPolicy is not Never or OnFailure"),
    (any(m["mountPath"] == "/data" and volumes.get(m["name"]) == claim["metadata"]["name"]
         for m in container["volumeMounts"]), "the claim is not mounted at /data"),
    (container.get("command") == ["/bin/sh", "-c"] and len(container.get("args", [])) == 1,
     "the container does not run one sh -c script")] if not ok]
if problems:
    sys.exit("\n".join(problems))
open(sys.argv[2], "w").write(container["args"][0])
EOF
"$python" "$tmp/check-manifests.py" "$tmp/job.yaml" "$tmp/pod-script.sh" >"$tmp/yaml.out" 2>&1 ||
    fail "manifests: $(cat "$tmp/yaml.out")"
# The pods' script, run here with sh for three shards: every input gets its output beside it, and
# a rerun of a shard (a retried pod) writes nothing.
if [[ -s $tmp/pod-script.sh ]]; then
    make_inputs "$pod"
    (cd "$pod/in" && find "$PWD" -name '*.pdf' | LC_ALL=C sort) >"$pod/files.txt"
    # A pod's /tmp is its own: here, a folder of the test's.
    mkdir -p "$pod/tmp"
    sed -i "s#/tmp/#$pod/tmp/#g; s#/data\\b#$pod#g" "$tmp/pod-script.sh"
    run_shard() {
        SHARDS=3 JOB_COMPLETION_INDEX=$1 sh "$tmp/pod-script.sh" \
            >"$tmp/pod.out" 2>&1 || fail "pod script, index $1: $(cat "$tmp/pod.out")"
    }
    run_shard 0; run_shard 1; run_shard 2
    expected=$(with_outputs)
    [[ $(listing "$pod/in") == "$expected" ]] ||
        fail "pod script: files are not inputs + outputs: $(listing "$pod/in" | tr '\n' ' ')"
    for f in "${inputs[@]}"; do
        out="$pod/in/${f%.pdf}-compressed.pdf"
        [[ -f $out ]] && { valid_pdf "$out" || fail "pod script: $out does not pass qpdf --check"; }
    done
    run_shard 1
    [[ $(listing "$pod/in") == "$expected" ]] || fail "pod script: the rerun of shard 1 wrote files"
fi
echo "Kubernetes manifests and the pods' script: $(($(date +%s) - start)) s"

if ((failed)); then
    echo "sshd log:"; cat "$tmp/ssh/sshd.log"
    exit 1
fi
echo "PASS"
