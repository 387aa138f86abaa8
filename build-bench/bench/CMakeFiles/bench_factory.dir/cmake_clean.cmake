file(REMOVE_RECURSE
  "CMakeFiles/bench_factory.dir/bench_factory.cpp.o"
  "CMakeFiles/bench_factory.dir/bench_factory.cpp.o.d"
  "bench_factory"
  "bench_factory.pdb"
)

# Per-language clean rules from dependency scanning.
foreach(lang CXX)
  include(CMakeFiles/bench_factory.dir/cmake_clean_${lang}.cmake OPTIONAL)
endforeach()
