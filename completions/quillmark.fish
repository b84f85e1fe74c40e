# fish completion for quillmark.

# Succeeds if the command is one of those given, or if there is no command yet.
function __quillmark_is
    set -l words (commandline -opc)
    contains -- "$words[2]" $argv
end

# Prints each field that the current list does not contain yet, after the fields in the list.
function __quillmark_list
    set -l named (commandline -ct | string replace -r '[^,]*$' '')
    for field in $argv
        contains -- $field (string split , -- $named); or echo $named$field
    end
end

complete -c quillmark -f
# generated: options (scripts/options)
set -l fields \
    album album-artist artist artwork bpm comment composer conductor copyright disc-number disc-total encoded-by \
    file-owner genre grouping initial-key lyricist lyrics publisher subtitle title track-number track-total year
complete -c quillmark -n '__quillmark_is ""' -a read -d 'list the tags of MP3 files'
complete -c quillmark -n '__quillmark_is ""' -a copy -d 'put one file\'s tags on the clipboard'
complete -c quillmark -n '__quillmark_is ""' -a paste -d 'write the tags on the clipboard into files'
complete -c quillmark -n '__quillmark_is ""' -a apply -d 'write one file\'s tags into others'
complete -c quillmark -n '__quillmark_is ""' -a set -d 'write given values into files'
complete -c quillmark -n '__quillmark_is read' -l json -d 'print one JSON object, a member for each file'
complete -c quillmark -n '__quillmark_is read' -l no-artwork -d 'with --json, print only the size of each picture'
complete -c quillmark -n '__quillmark_is read' -l table -d 'print one line for each file'
complete -c quillmark -n '__quillmark_is read' -l paths -d 'with --table, name files as they were given'
complete -c quillmark -n '__quillmark_is read' -l fields -xa "(__quillmark_list $fields)" -d 'print these fields and no others'
complete -c quillmark -n '__quillmark_is read' -l save-artwork -rF -d 'save the picture of one MP3; - is standard output'
complete -c quillmark -n '__quillmark_is read' -l keep-going -d 'report files that cannot be read, and go on'
complete -c quillmark -n '__quillmark_is read paste apply set' -l recursive -d 'for a folder, take the MP3 files in and below it'
complete -c quillmark -n '__quillmark_is read paste apply set' -l files0-from -rF -d 'take further files from a list, names ended by NUL'
complete -c quillmark -n '__quillmark_is read copy paste apply set' -l lossless -d 'keep everything that other programs wrote'
complete -c quillmark -n '__quillmark_is read copy paste apply set' -l notes -d 'print notes even if there is no terminal'
complete -c quillmark -n '__quillmark_is read copy paste apply set' -l strict -d 'check the words and all files before the first write'
complete -c quillmark -n '__quillmark_is read copy paste apply set' -l help -d 'print this text'
complete -c quillmark -n '__quillmark_is copy' -l no-desktop -d 'leave the desktop\'s clipboard alone'
complete -c quillmark -n '__quillmark_is paste apply' -l all -d 'write every field, not only the album identity'
complete -c quillmark -n '__quillmark_is paste apply' -l fields -xa "(__quillmark_list $fields)" -d 'write these fields and no others'
complete -c quillmark -n '__quillmark_is paste apply set' -l dry-run -d 'say what would happen and write nothing'
complete -c quillmark -n '__quillmark_is paste apply set' -l diff -d 'show what changes in each file, field by field'
complete -c quillmark -n '__quillmark_is paste apply set' -l backup -d 'keep each file as it was beside the new one'
complete -c quillmark -n '__quillmark_is paste apply set' -l paths -d 'name files in the report as they were given'
complete -c quillmark -n '__quillmark_is paste apply set' -l quiet -d 'print no lines for unchanged files'
complete -c quillmark -n '__quillmark_is apply' -l from -xka '(__fish_complete_suffix .mp3)' -d 'the MP3 whose tags are written'
complete -c quillmark -n '__quillmark_is apply' -l whole-tag -d 'copy the whole tag, frame for frame'
complete -c quillmark -n '__quillmark_is set' -l clear -xa "(__quillmark_list $fields)" -d 'remove these fields'
complete -c quillmark -n '__quillmark_is set' -l from-json -xka '(__fish_complete_suffix .json)' -d 'write a document of read --json; - is standard input'
complete -c quillmark -n '__quillmark_is read copy paste apply set' -ka '(__fish_complete_suffix .mp3)'
# end of options
complete -c quillmark -n '__quillmark_is ""' -a fields -d 'list the names of the fields'
complete -c quillmark -n '__quillmark_is ""' -a help -d 'print a short text on all commands'
for field in $fields
    test $field = artwork; and continue
    complete -c quillmark -n '__quillmark_is set' -l $field -x -d 'write this value'
end
complete -c quillmark -n '__quillmark_is set' -l artwork -xka '(__fish_complete_suffix .jpg .jpeg .png)' -d 'write this picture'
