# Empty dependencies file for bench_tm.
# This may be replaced when dependencies are built.
