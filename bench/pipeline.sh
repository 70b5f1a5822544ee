#!/bin/sh
# The map catalogue's work done by hand with unzip and ImageMagick, for comparison:
# list each archive, recognise the stock maps, read the first arena script of a
# custom map, write the catalogue, copy the level shots out of every archive,
# convert the tga files to bmp (in batches, on two cores) and sort the catalogue for the tree.
# Usage: pipeline.sh BASE_FOLDER OUTPUT_FOLDER
set -eu
base=$1
out=$2
mkdir -p "$out/levelshots" "$out/scripts"
catalogue="$out/Jedi.aml"
: > "$catalogue"
stock=" duel_bespin duel_hangar duel_temple duel_training ffa_bespin ffa_deathstar ffa_imperial ffa_ns_hideout ffa_ns_streets ffa_yavin ctf_bespin ctf_imperial ctf_ns_streets ctf_yavin duel_bay duel_carbon duel_jedi duel_pit ffa_raven "

for archive in "$base"/*; do
    name=$(basename "$archive")
    upper=$(printf '%s' "$name" | tr '[:lower:]' '[:upper:]')
    case "$upper" in *PK3) ;; *) continue ;; esac
    [ "$upper" = ASSETS1.PK3 ] && continue
    entries=$(unzip -Z1 "$archive")
    custom=""
    for bsp in $(printf '%s\n' "$entries" | grep -i 'bsp$' || true); do
        map=$(basename "$bsp"); map=${map%%.*}
        case "$stock" in
            *" $map "*) printf '%s,%s,%s,stock,stock\r\n' "$name" "$map" "$map" >> "$catalogue" ;;
            *) [ "$upper" = ASSETS0.PK3 ] || { custom=$map; break; } ;;
        esac
    done
    [ -n "$custom" ] || continue
    script=$(printf '%s\n' "$entries" | grep -i '^scripts/[^/]*\.arena$' | head -n 1 || true)
    if [ -n "$script" ]; then
        unzip -o -q "$archive" "$script" -d "$out"
        longname=$(sed -n 's/^[[:space:]]*longname[[:space:]]*"\(.*\)".*/\1/p' "$out/$script" | head -n 1)
        type=$(sed -n 's/^[[:space:]]*type[[:space:]]*"\(.*\)".*/\1/p' "$out/$script" | head -n 1 | tr '[:lower:]' '[:upper:]')
        rm -f "$out/$script"
        printf '%s,%s,%s,%s,%s\r\n' "$name" "$custom" "$custom" "$longname" "$type" >> "$catalogue"
    else
        printf '%s,%s,%s,%s,unknown\r\n' "$name" "$custom" "$custom" "$custom" >> "$catalogue"
    fi
done

for archive in "$base"/*; do
    case "$(printf '%s' "$archive" | tr '[:lower:]' '[:upper:]')" in *PK3) ;; *) continue ;; esac
    unzip -o -q -C "$archive" 'levelshots/*.jpg' 'levelshots/*.tga' -d "$out" 2>/dev/null || true
done

# convert takes a hundred pictures per run, two runs at a time: one run per picture
# would spend nearly all its time starting convert.
find "$out/levelshots" -maxdepth 1 -name '*.tga' -print0 |
    xargs -0 -r -n 100 -P 2 sh -c 'convert "$@" -set filename:base "%d/%t" "%[filename:base].bmp" && rm -f "$@"' sh

sort -t, -k1,1 -s "$catalogue" > "$out/tree.txt"
