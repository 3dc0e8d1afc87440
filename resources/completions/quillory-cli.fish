# Completes the arguments of quillory-cli in fish.
set -l commands info convert transform print preview definitions highlight find functions statistics sniff

function __quillory_cli_command
    __fish_seen_subcommand_from $argv
end

complete -c quillory-cli -n "not __quillory_cli_command $commands" -f
complete -c quillory-cli -n "not __quillory_cli_command $commands" -l help -d 'Print the commands'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -l version -d 'Print the version'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a info -d 'Tell kind, encoding and line breaks'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a convert -d 'Write in another encoding, format or kind'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a transform -d 'Clean up a file'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a print -d 'Print to a PDF file'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a preview -d 'Write the web page of a file'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a definitions -d 'List the installed definitions'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a highlight -d 'Write in colours'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a find -d 'List what a file holds'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a functions -d 'List the functions'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a statistics -d 'Count characters, words and lines'
complete -c quillory-cli -n "not __quillory_cli_command $commands" -a sniff -d 'Guess the encoding'

complete -c quillory-cli -n '__quillory_cli_command info definitions find functions statistics sniff' -l format -x -a 'text json' -d 'Form of the answer'
complete -c quillory-cli -n '__quillory_cli_command highlight' -l format -x -a 'ansi html json' -d 'Form of the answer'
complete -c quillory-cli -n '__quillory_cli_command convert' -l from -x -d 'Encoding of the file'
complete -c quillory-cli -n '__quillory_cli_command convert' -l encoding -x -d 'Encoding to write'
complete -c quillory-cli -n '__quillory_cli_command convert' -l line-breaks -x -a 'unix mac windows' -d 'Line breaks to write'
complete -c quillory-cli -n '__quillory_cli_command convert' -l as -x -a 'text archive' -d 'Kind to write'
complete -c quillory-cli -n '__quillory_cli_command transform' -f -a 'trim zap unwrap reformat' -d 'Clean-up'
complete -c quillory-cli -n '__quillory_cli_command print' -l line-numbers -d 'Print the numbers of the lines'
complete -c quillory-cli -n '__quillory_cli_command print' -l colours -d 'Print in colours'
complete -c quillory-cli -n '__quillory_cli_command preview highlight functions' -l definition -r -d 'Title or file of the language'
complete -c quillory-cli -n '__quillory_cli_command find' -l regex -d 'Find a regular expression'
complete -c quillory-cli -n '__quillory_cli_command find' -l match-case -d 'Tell capitals from small letters'
complete -c quillory-cli -n '__quillory_cli_command find' -l whole-words -d 'Find whole words'
complete -c quillory-cli -n '__quillory_cli_command preview' -l base -x -d 'Address that links are relative to'
complete -c quillory-cli -n '__quillory_cli_command highlight' -l theme -r -d 'Name or file of the theme'
complete -c quillory-cli -n '__quillory_cli_command highlight statistics' -l range -x -d 'LOCATION,LENGTH in UTF-16 code units'
complete -c quillory-cli -n '__quillory_cli_command highlight' -l default -x -d 'KEY=VALUE of the user defaults'
