# Completion of vorn for fish. vorn itself knows what may come next.
function __vorn_candidates
   set -l words (commandline --tokenize --current-process --cut-at-cursor)
   set -l word (commandline --current-token --cut-at-cursor)
   $words[1] complete -- $words[2..-1] "$word" 2> /dev/null
end

# Where it knows nothing, a file may stand.
complete --command vorn --condition 'test -n "$(__vorn_candidates)"' --no-files \
         --arguments '(__vorn_candidates)'
