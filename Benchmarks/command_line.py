"""What commands cost from the start of their process to its end, beside another task list for the command line."""

import calendar
import json
import os
import shutil
import statistics
import subprocess
import time

WORDS = {0: "L", 1: "M", 2: "H", 3: "H"}  # the peer has three priorities


class Peer:
    """taskwarrior with the same tasks, in a folder of its own. Its files are written as it writes them, a task a line:
    its import takes an hour for so many."""

    def __init__(self, folder, tasks):
        self.folder = folder
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        (folder / "taskrc").write_text(f"data.location={folder}\nconfirmation=no\nverbose=nothing\nhooks=off\n")
        self.environment = {"TASKRC": str(folder / "taskrc"), "TASKDATA": str(folder)}
        for file, isCompleted in (("pending.data", False), ("completed.data", True)):
            lines = [self.line(task) for task in tasks if task["isCompleted"] == isCompleted]
            (folder / file).write_text("".join(lines))
        for words in (["status:pending"], ["status:completed"]):
            count = int(self.output(*words, "count"))
            expected = sum(task["isCompleted"] == (words[0] == "status:completed") for task in tasks)
            if count != expected:
                raise RuntimeError(f"taskwarrior has read {count} tasks of {expected}: {words[0]}")

    def output(self, *words):
        return subprocess.run(["task", *words], env=dict(os.environ, **self.environment), check=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout

    @staticmethod
    def line(task):
        seconds = lambda date: str(calendar.timegm(time.strptime(date, "%Y-%m-%dT%H:%M:%SZ")))
        record = {"description": task["title"], "entry": seconds(task["createdAt"]),
                  "modified": seconds(task["updatedAt"]), "priority": WORDS[task["priority"]],
                  "status": "completed" if task["isCompleted"] else "pending", "uuid": task["id"].lower()}
        if task["tags"]:
            record["tags"] = ",".join(f"t{tag['id'][:8]}" for tag in task["tags"])
        if task["isCompleted"]:
            record["end"] = seconds(task["completedAt"])
        if "dueDate" in task:
            record["due"] = seconds(task["dueDate"])
        if "projectName" in task:
            record["project"] = task["projectName"]
        escaped = lambda text: json.dumps(text, ensure_ascii=False)[1:-1].replace("[", "&open;").replace("]", "&close;")
        return "[" + " ".join(f'{name}:"{escaped(record[name])}"' for name in sorted(record)) + "]\n"


def measure(table, program, home, work, finished, rounds):
    ours = {"XDG_DATA_HOME": str(home), "XDG_CONFIG_HOME": str(home / "config")}
    run = lambda *words: finished(program, *words, **ours)[0]
    today = statistics.median(run("list", "today") for _ in range(rounds)) * 1e3
    table.add("quillorn list today of 10,000", f"{today:.1f} ms", "", None, "≤ 20 ms", today <= 20)
    if not shutil.which("task"):
        table.add("quillorn list, add of 10,000", "not measured: there is no taskwarrior")
        return
    everything = subprocess.run([str(program), "list", "--completed", "--json"], env=dict(os.environ, **ours), check=True,
                                stdout=subprocess.PIPE).stdout
    peer = Peer(work / "taskwarrior", json.loads(everything))
    for what, words, others in (("list", ["list"], ["list"]),
                                ("add", ["add", "Call Bob tomorrow"], ["add", "Call Bob", "due:tomorrow"])):
        times, theirs = [], []
        for _ in range(rounds):
            times.append(run(*words))
            theirs.append(finished("task", *others, **peer.environment)[0])
        median, other = (statistics.median(side) * 1e3 for side in (times, theirs))
        table.add(f"quillorn {what} of 10,000", f"{median:.1f} ms", f"taskwarrior {other:.1f} ms", median / other,
                  "≤ 0.25", median / other <= 0.25)
