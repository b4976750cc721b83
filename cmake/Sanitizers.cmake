# Leak checks run with the rest: the asan test preset turns LeakSanitizer on
# and hands it cmake/lsan.supp, the list of leaks kept on purpose.
if(PLR_SANITIZE)
  # vptr checks are off: classes shared across the module boundary have hidden
  # visibility, so each binary carries its own type information for them.
  set(PLR_SAN_FLAGS -fsanitize=address,undefined -fno-sanitize=vptr -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_compile_options(${PLR_SAN_FLAGS})
  add_link_options(-fsanitize=address,undefined)
endif()
