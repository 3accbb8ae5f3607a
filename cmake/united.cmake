# zelt_unite(<folder>...): compiles the sources of each target below the folders several at a time, which takes half the time: the
# templates that they share are compiled once. The names in their unnamed namespaces must therefore differ within a target.
function(zelt_unite)
  if(ZELT_UNITED AND NOT ZELT_MUTANTS)
    zelt_compiled_targets(targets ${ARGN})
    set_target_properties(${targets} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
  endif()
endfunction()
