# Completes the arguments of quillory in fish.
complete -c quillory -l line -x -d 'Show this place of the first file'
complete -c quillory -l wait -d 'Return when the windows of the files are closed'
complete -c quillory -l new-instance -d 'Do not leave the files to the one that runs'
complete -c quillory -l print-to -r -d 'Print the file to a PDF file'
complete -c quillory -l line-numbers -d 'Print the numbers of the lines'
complete -c quillory -l colours -d 'Print in colours'
complete -c quillory -s h -l help -d 'Show the options'
complete -c quillory -s v -l version -d 'Show the version'
