// Something to compile beside the headers that all tests share.
