# Sourced: write_sample_files <folder> writes the sample production files of sample-files.txt
# into folder, in the bytes of a ledger export (CR LF); files that exist stay as they are.
write_sample_files() {
    local folder="$1" name lines i
    while read -r name lines; do
        [ -e "$folder/$name" ] && continue
        for i in $(seq 1 "$lines"); do
            printf 'Demo %s regel %04d: boeking %d, bedrag %d,%02d EUR\r\n' "$name" "$i" "$i" \
                $((i * 37 % 1000)) $((i % 100))
        done >"$folder/$name"
    done < <(grep -v '^#' "$(dirname "${BASH_SOURCE[0]}")/sample-files.txt")
}
