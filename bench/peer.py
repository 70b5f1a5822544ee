#!/usr/bin/python3
"""The map catalogue's work in one Python process, for comparison with the program's
chain: the catalogue of the base folder's archives, the level shots of every archive
copied into levelshots/, and the tga ones converted to bmp. zipfile and Pillow do the
reading and the pictures; everything stays in memory but the files that remain.

Usage: peer.py BASE_FOLDER OUTPUT_FOLDER [--floor]

With --floor it only reads each archive's directory once and inflates the bytes that
must be inflated (the first script of a custom map and every level shot), and writes
nothing: the floor of the work.
"""
import io
import os
import sys
import zipfile

STOCK = {
    "duel_bespin": ("Bespin Air Vanes", "duel"), "duel_hangar": ("Hangar Bay 72", "duel"),
    "duel_temple": ("Ceremonial Hall", "duel"), "duel_training": ("Lightsaber Training", "duel"),
    "ffa_bespin": ("Bespin Streets", "ffa holocron jedimaster team"),
    "ffa_deathstar": ("Death Star", "ffa holocron jedimaster team"),
    "ffa_imperial": ("Star Destroyer", "ffa holocron jedimaster team"),
    "ffa_ns_hideout": ("Garbage Facility", "ffa holocron jedimaster team"),
    "ffa_ns_streets": ("Nar Shaddaa Streets", "ffa holocron jedimaster team"),
    "ffa_yavin": ("Massassi Temple", "ffa holocron jedimaster team"),
    "ctf_bespin": ("Bespin Exhaust Shafts", "ctf cty team ffa holocron jedimaster"),
    "ctf_imperial": ("Garrison 27-D", "ctf cty team ffa holocron jedimaster"),
    "ctf_ns_streets": ("Warring Factions", "ctf cty team ffa holocron jedimaster"),
    "ctf_yavin": ("Temple Tournament", "ctf cty team ffa holocron jedimaster"),
    "duel_bay": ("Imperial Shuttle Bay", "duel"), "duel_carbon": ("Carbon Chamber", "duel"),
    "duel_jedi": ("Battleground Jedi 2.0", "duel"), "duel_pit": ("Trial Pit", "duel"),
    "ffa_raven": ("Imperial Labs: Raven", "ffa holocron jedimaster duel team"),
}


def read_script(data, state):
    text = data.decode("latin-1").replace("\r\n", "\n").replace("\r", "\n")
    for line in text.split("\n"):
        line = line.strip(" ")
        if line == "{":
            continue
        if line == "}":
            break
        fields = line.split('"')
        value = fields[1] if len(fields) > 1 else ""
        if "longname" in fields[0]:
            state["long"] = value
        elif "type" in fields[0]:
            state["type"] = value


def main():
    base, out = sys.argv[1], sys.argv[2]
    floor = "--floor" in sys.argv[3:]
    if not floor:
        from PIL import Image
    shots = os.path.join(out, "levelshots")
    os.makedirs(shots, exist_ok=True)
    names = sorted((n for n in os.listdir(base) if os.path.isfile(os.path.join(base, n))), key=str.lower)
    lines = []
    state = {"long": "", "type": ""}
    inflated = 0
    for name in names:
        upper = name.upper()
        if not upper.endswith("PK3"):
            continue
        with zipfile.ZipFile(os.path.join(base, name)) as archive:
            entries = archive.infolist()
            if upper != "ASSETS1.PK3":
                custom = None
                for e in entries:
                    leaf = e.filename.rsplit("/", 1)[-1]
                    if not leaf.lower().endswith("bsp"):
                        continue
                    map_name = leaf.split(".", 1)[0]
                    if map_name in STOCK:
                        lines.append(",".join([name, map_name, map_name, *STOCK[map_name]]))
                    elif upper != "ASSETS0.PK3":
                        custom = map_name
                        break
                if custom is not None:
                    script = next((e for e in entries if e.filename.lower().startswith("scripts/")
                                   and e.filename.lower().endswith(".arena")), None)
                    if script is None:
                        lines.append(",".join([name, custom, custom, custom, "unknown"]))
                    else:
                        data = archive.read(script)
                        inflated += len(data)
                        read_script(data, state)
                        lines.append(",".join([name, custom, custom, state["long"], state["type"].upper()]))
            for e in entries:
                folder, _, leaf = e.filename.rpartition("/")
                lower = leaf.lower()
                if folder.lower() != "levelshots" or not (lower.endswith(".jpg") or lower.endswith(".tga")):
                    continue
                data = archive.read(e)
                inflated += len(data)
                if floor:
                    continue
                stem = leaf.rsplit(".", 1)[0]
                if lower.endswith(".jpg"):
                    with open(os.path.join(shots, leaf), "wb") as f:
                        f.write(data)
                else:
                    Image.open(io.BytesIO(data)).convert("RGB").save(os.path.join(shots, stem + ".bmp"), "BMP")
    if not floor:
        with open(os.path.join(out, "Jedi.aml"), "wb") as f:
            f.write("".join(line + "\r\n" for line in lines).encode("latin-1"))
    print(f"{len(lines)} records, {inflated} bytes inflated")


if __name__ == "__main__":
    main()
