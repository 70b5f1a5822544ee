#!/usr/bin/env python3
"""The watcher's costs, measured on arena-stewardctl as a service manager runs it.

1. Debian's OpenArena server (ioq3ded) watched by `arena-stewardctl run`: the watcher's
   resident memory and processor time while the server runs, the time of
   `arena-stewardctl status` from its start to its end, and the time from a SIGSEGV to
   the server that answers getstatus again, less the restart delay.
2. A stub server that exits at once with status 1, restarted 1,000 times with no delay,
   and then runs: the watcher's resident memory, open files and sockets after 10 and
   after 1,000 restarts, once more when the server has run a few seconds, and the files
   left in the server's folder.

Usage: bench/watch.py <arena-stewardctl> [--restarts N]
"""
import os
import signal
import socket
import statistics
import subprocess
import sys
import tempfile
import time

ENGINE = "/usr/lib/ioquake3/ioq3ded"
GAME_DATA = "/usr/lib/openarena-server"


def configuration(path, game, executable, port, limit, window):
    rows = {
        "PathToJedi": game + "/",
        "PathToServer": executable,
        "ServerType": "1",
        "ServerInfo11": "bench",
        "ServerInfo112": str(port),
        "ServerInfo114": "secret",
        "MapListSaved": "oa_dm1;",
        "RunStartingMap": "oa_dm1",
        "RestartServer": "1",
        "RestartLimit": str(limit),
        "RestartWindow": str(window),
        "MsgOn": "0",
        "BOTs0": "0",
    }
    with open(path, "w") as f:
        for key, value in rows.items():
            f.write(f"{key},{value}\r\n")


def environment(root):
    env = dict(os.environ)
    env["XDG_DATA_HOME"] = os.path.join(root, "data")
    env["XDG_CONFIG_HOME"] = os.path.join(root, "config")
    for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
        env.pop(name, None)
    return env


def state_file(root):
    return os.path.join(root, "data", "ArenaSteward", "servers", "bench", "state.json")


def read_state(root):
    import json
    try:
        with open(state_file(root)) as f:
            return json.load(f)
    except (OSError, ValueError):
        return None


def rss_kib(pid):
    with open(f"/proc/{pid}/status") as f:
        for line in f:
            if line.startswith("VmRSS:"):
                return int(line.split()[1])
    return 0


def cpu_seconds(pid):
    with open(f"/proc/{pid}/stat") as f:
        fields = f.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def open_files(pid):
    names = [os.readlink(f"/proc/{pid}/fd/{fd}") for fd in os.listdir(f"/proc/{pid}/fd")]
    return len(names), sum(1 for n in names if n.startswith("socket:"))


def answers(port, timeout=0.05):
    s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    s.settimeout(timeout)
    try:
        s.sendto(b"\xff\xff\xff\xffgetstatus", ("127.0.0.1", port))
        s.recvfrom(65536)
        return True
    except OSError:
        return False
    finally:
        s.close()


def wait_for(condition, seconds):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if condition():
            return True
        time.sleep(0.005)
    return False


def real_server(ctl, port):
    if not os.access(ENGINE, os.X_OK):
        print("real server: skipped, no", ENGINE)
        return
    with tempfile.TemporaryDirectory() as root:
        game = os.path.join(root, "game")
        os.makedirs(os.path.join(game, "base"))
        script = os.path.join(game, "q3server")
        with open(script, "w") as f:
            f.write(f'#!/bin/sh\nexec {ENGINE} +set com_basegame baseoa +set fs_basepath {GAME_DATA} '
                    f'+set fs_homepath "$PWD" +set fs_game base +set com_legacyprotocol 71 '
                    f'+set com_protocol 71 "$@"\n')
        os.chmod(script, 0o755)
        config = os.path.join(root, "bench.asc")
        configuration(config, game, "q3server", port, 100, 10)
        env = environment(root)
        delay = 1.0
        run = subprocess.Popen([ctl, "run", "--config", config, "--restart-delay", str(delay)], env=env,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            if not wait_for(lambda: answers(port), 30):
                print("real server: no answer")
                return
            time.sleep(1)
            cpu_before = cpu_seconds(run.pid)
            time.sleep(5)
            idle_cpu = cpu_seconds(run.pid) - cpu_before
            rss = rss_kib(run.pid)
            files, sockets = open_files(run.pid)
            print(f"watcher while the server runs: {rss / 1024:.1f} MiB resident, {idle_cpu * 1000:.0f} ms "
                  f"processor time in 5 s, {files} open files ({sockets} sockets)")

            # The engine answers one address about one getstatus a second once a burst of
            # ten is spent; a status a second is what a monitor asks.
            times = []
            time.sleep(10)
            for _ in range(20):
                time.sleep(1.1)
                start = time.perf_counter()
                subprocess.run([ctl, "status", "--config", config], env=env, stdout=subprocess.DEVNULL)
                times.append((time.perf_counter() - start) * 1000)
            print(f"arena-stewardctl status, start to end: median {statistics.median(times):.1f} ms, "
                  f"slowest {max(times):.1f} ms (20 runs)")

            backs = []
            for _ in range(5):
                server = read_state(root)["server"]["pid"]
                os.kill(server, signal.SIGSEGV)
                crashed = time.monotonic()
                wait_for(lambda: read_state(root)["server"]["pid"] != server and answers(port), 15)
                backs.append(time.monotonic() - crashed - delay)
                time.sleep(0.5)
            print(f"crash to an answer again, less the {delay:.0f} s delay: median "
                  f"{statistics.median(backs) * 1000:.0f} ms, slowest {max(backs) * 1000:.0f} ms (5 crashes)")
        finally:
            run.send_signal(signal.SIGTERM)
            run.wait(10)


def stub_restarts(ctl, port, restarts):
    with tempfile.TemporaryDirectory() as root:
        game = os.path.join(root, "game")
        os.makedirs(os.path.join(game, "base"))
        script = os.path.join(game, "stub")
        with open(script, "w") as f:
            f.write('#!/bin/sh\nn=$(cat "$0.count" 2>/dev/null || echo 0)\nn=$((n + 1))\necho $n > "$0.count"\n'
                    f'[ $n -le {restarts} ] && exit 1\nexec sleep 600\n')
        os.chmod(script, 0o755)
        config = os.path.join(root, "bench.asc")
        configuration(config, game, "stub", port, restarts, 1440)
        run = subprocess.Popen([ctl, "run", "--config", config, "--restart-delay", "0"], env=environment(root),
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        samples = {}
        started = time.monotonic()
        try:
            count = 0
            while run.poll() is None and count < restarts:
                state = read_state(root)
                count = state["restarts"] if state else 0
                for mark in (10, restarts):
                    if count >= mark and mark not in samples:
                        try:
                            samples[mark] = (rss_kib(run.pid),) + open_files(run.pid)
                        except OSError:
                            pass
                time.sleep(0.002)
            took = time.monotonic() - started
            # The server runs now; the watcher settles.
            time.sleep(4)
            settled = (rss_kib(run.pid),) + open_files(run.pid)
        finally:
            run.send_signal(signal.SIGTERM)
            run.wait(10)
        state = read_state(root)
        folder = os.path.dirname(state_file(root))
        print(f"{state['restarts']} restarts of a stub that exits at once in {took:.1f} s "
              f"({took / max(1, state['restarts']) * 1000:.1f} ms each), then it runs")
        for mark, (rss, files, sockets) in sorted(samples.items()):
            print(f"  after {mark} restarts: {rss / 1024:.1f} MiB resident, {files} open files ({sockets} sockets)")
        rss, files, sockets = settled
        print(f"  the server running again, 4 s later: {rss / 1024:.1f} MiB resident, {files} open files "
              f"({sockets} sockets)")
        print(f"  files in the server's folder: {len(os.listdir(folder))}")


def main():
    if len(sys.argv) < 2:
        print(__doc__)
        return 2
    ctl = os.path.abspath(sys.argv[1])
    restarts = int(sys.argv[sys.argv.index("--restarts") + 1]) if "--restarts" in sys.argv else 1000
    port = 29000 + os.getpid() % 900
    real_server(ctl, port)
    stub_restarts(ctl, port + 1, restarts)
    return 0


if __name__ == "__main__":
    sys.exit(main())
