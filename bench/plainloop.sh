#!/bin/sh
# The same from a shell: plainloop.sh LIST STORAGE FOLDER
set -eu
cd "$3"
while read -r id md5 file_md5 kind path; do
    curl -s -o "$md5" "$2/$id"
    echo "$md5  $md5" | md5sum -c --status
    mkdir -p "$(dirname "$path")"
    if [ "$kind" = cab ]; then
        cabextract -q "$md5"
        rm "$md5"
        mv "$(basename "$path")" "$file_md5"
        echo "$file_md5  $file_md5" | md5sum -c --status
    fi
    mv "$file_md5" "$path"
done <"$1"
