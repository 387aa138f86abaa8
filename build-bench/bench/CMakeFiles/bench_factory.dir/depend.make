# Empty dependencies file for bench_factory.
# This may be replaced when dependencies are built.
