# The fuzz targets: fuzz/fuzz_<name>.cpp, with its seed corpus in fuzz/corpus/<name>/.
set(VEXA_FUZZ_TARGETS reply options filter datetime paths)
