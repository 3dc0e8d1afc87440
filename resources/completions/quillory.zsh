#compdef quillory quillory-cli

_quillory_editor() {
    _arguments -s \
        '--line[show this place of the first file]:line or line\:column:' \
        '--wait[return when the windows of the files are closed]' \
        '--new-instance[do not leave the files to the one that runs]' \
        '--print-to[print the file to a PDF file]:PDF file:_files -g "*.pdf"' \
        '--line-numbers[print the numbers of the lines]' \
        '--colours[print in colours]' \
        '(- *)'{-h,--help}'[show the options]' \
        '(- *)'{-v,--version}'[show the version]' \
        '*:file:_files'
}

_quillory_cli() {
    local -a commands
    commands=(
        'info:tell the kind, encoding and line breaks of a file'
        'convert:write a file in another encoding, line-break format or kind'
        'transform:clean up a file'
        'print:print a file to a PDF file'
        'preview:write the web page of a file'
        'definitions:list the installed definitions'
        'highlight:write a file in the colours of its language'
        'find:list the places of a file that hold a text'
        'functions:list the functions of a file'
        'statistics:count characters, words and lines'
        'sniff:guess the encoding of a file'
    )
    _arguments -C '--help[print the commands]' '--version[print the version]' \
        '1:command:->command' '*::argument:->argument'
    case $state in
    command) _describe command commands ;;
    argument)
        case $words[1] in
        info | sniff) _arguments '--format[form of the answer]:form:(text json)' '*:file:_files' ;;
        convert)
            _arguments '--from[encoding of the file]:encoding:' \
                '--encoding[encoding to write]:encoding:' \
                '--line-breaks[line breaks to write]:format:(unix mac windows)' \
                '--as[kind to write]:kind:(text archive)' '*:file:_files'
            ;;
        transform) _arguments '1:clean-up:(trim zap unwrap reformat)' '*:file:_files' ;;
        print)
            _arguments '--line-numbers[print the numbers of the lines]' \
                '--colours[print in colours]' '*:file:_files'
            ;;
        preview)
            _arguments '--definition[language]:title or file:_files' \
                '--base[base address]:address:' '*:file:_files'
            ;;
        definitions) _arguments '--format[form of the answer]:form:(text json)' ;;
        highlight)
            _arguments '--definition[language]:title or file:_files' \
                '--theme[theme]:name or file:_files' \
                '--range[part to write]:location,length:' '*--default[user default]:key=value:' \
                '--format[form of the answer]:form:(ansi html json)' '*:file:_files'
            ;;
        statistics)
            _arguments '--range[part to count]:location,length:' \
                '--format[form of the answer]:form:(text json)' '*:file:_files'
            ;;
        find)
            _arguments '--regex[find a regular expression]' '--match-case[tell capitals from small letters]' \
                '--whole-words[find whole words]' '--format[form of the answer]:form:(text json)' \
                '1:text:' '2:file:_files'
            ;;
        functions)
            _arguments '--definition[language]:title or file:_files' \
                '--format[form of the answer]:form:(text json)' '*:file:_files'
            ;;
        esac
        ;;
    esac
}

case $service in
quillory) _quillory_editor "$@" ;;
quillory-cli) _quillory_cli "$@" ;;
esac
