file(REMOVE_RECURSE
  "CMakeFiles/bench_tm.dir/bench_tm.cpp.o"
  "CMakeFiles/bench_tm.dir/bench_tm.cpp.o.d"
  "bench_tm"
  "bench_tm.pdb"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/bench_tm.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
